# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""The device manager: it reports cameras and sound cards to the library as they come and go."""
