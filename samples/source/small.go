package small
