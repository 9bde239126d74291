"""What the user is told when the sandbox cannot start."""


class SandboxError(Exception):
    """The sandbox cannot start; the text is one sentence that says why."""
