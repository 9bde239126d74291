# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""What other programs that show cameras do in the situations for which the services are made, on the same guest."""
