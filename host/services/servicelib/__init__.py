"""What the services have in common."""
