"""The error for a request that is impossible."""


class SimError(Exception):
    """The request is impossible; the text gives the reason and is shown to the user."""
