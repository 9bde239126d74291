"""The streaming manager: it hears of changes and runs a stream for each profile that can have one."""
