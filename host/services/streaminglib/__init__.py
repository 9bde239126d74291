"""The streaming service's receiving end."""
