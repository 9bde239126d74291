"""The simulated USB hardware of the sandboxed host."""
