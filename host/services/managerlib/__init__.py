"""The manager: it receives change notifications and runs a stream for each profile that can stream."""
