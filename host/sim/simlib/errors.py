"""What the user is told when a request cannot be met."""


class SimError(Exception):
    """A request that cannot be met; its text is shown as it stands."""
