# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""A host for the library: private namespaces that contain everything at the paths that the library uses."""
