#!/usr/bin/env node
console.log("small");
