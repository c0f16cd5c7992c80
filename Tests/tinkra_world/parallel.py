"""Many short runs side by side: most of their time is waiting for a disk or a timer."""

import os
from concurrent.futures import ThreadPoolExecutor

from .world import sanitized


def in_parallel(run, cases, workers=None) -> list:
    """`run(case)` for every case; the results in order. Fails at the end with every case that failed."""
    cases = list(cases)
    failures = []

    def guarded(case):
        try:
            return run(case)
        except Exception as error:  # noqa: BLE001  every failure is reported with its case
            failures.append(f"{case}: {type(error).__name__}: {error}")
            return None

    with ThreadPoolExecutor(workers or 2 * (os.cpu_count() or 2)) as pool:
        results = list(pool.map(guarded, cases))
    if failures:
        shown = "\n".join(failures[:10])
        raise AssertionError(f"{len(failures)} of {len(cases)} runs failed:\n{shown}")
    return results


def sample(total: int, first: int, last: int = 5, between: int = 10) -> list:
    """Numbers from 1 to `total`: the first ones, the last ones and some in between; fewer under a
    sanitizer."""
    if sanitized():
        first, last, between = max(first // 5, 1), max(last // 2, 1), max(between // 5, 1)
    numbers = set(range(1, min(first, total) + 1)) | set(range(max(total - last + 1, 1), total + 1))
    step = max((total - first - last) // (between + 1), 1)
    numbers |= set(range(first + step, max(total - last, 0), step))
    return sorted(numbers)


def fewer_when_sanitized(count: int, divisor: int = 5) -> int:
    return max(count // divisor, 1) if sanitized() else count
