# SPDX-License-Identifier: GPL-3.0-or-later
"""What the tests of whole programs share: a user's home, a desktop without a screen, and patience."""
