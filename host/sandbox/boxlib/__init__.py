"""A host for the library: private namespaces that contain everything at the paths that the library uses."""
