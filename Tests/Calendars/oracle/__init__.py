"""What a calendar file means, written from RFC 5545 for obviousness and with no eye to speed.

It shares nothing with the product but the standard, so that the two can be compared. Times are naive
`datetime` values throughout; a name says whether it is UTC or the wall clock of some zone.
"""

from .occurrences import Occurrence, occurrences
from .zones import zone_named

__all__ = ["Occurrence", "occurrences", "zone_named"]
