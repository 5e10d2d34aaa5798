<?php
echo "small";
