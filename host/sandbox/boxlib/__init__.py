"""A host of its own for the library: private namespaces in which everything stands at the paths it really uses."""
