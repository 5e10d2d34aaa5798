fn small() -> u8 { 1 }
