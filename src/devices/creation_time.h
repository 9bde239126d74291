// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The moment at which a channel got its profile, as it is stored: 2024-03-05 08:15:00.
#pragma once

namespace usbdev {

enum class Earlier { first, second, neither };

/// Which of two creation times is the earlier one? The first also where a text is not a time.
Earlier earlierOf(const char *first, const char *second);

}  // namespace usbdev
