"""The host's login service: users, sessions, and the requests and answers of its two pages."""
