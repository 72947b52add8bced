// SPDX-License-Identifier: MIT

/// A row of a file. Such rows are shown as text; this one is empty.
ECardView {}
