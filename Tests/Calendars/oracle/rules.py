"""Recurrence rules (RFC 5545, section 3.3.10), one period after the other.

Where the RFC leaves a choice: DTSTART belongs to the series even if it does not fit; a skipped time moves forward
by the gap, a repeated one is its first; rules finer than DAILY count elapsed time; a yearly BYMONTHDAY without
BYMONTH means DTSTART's month; a week belongs to the year that has four of its days.
"""

import calendar
import re
from datetime import date, datetime, timedelta
from functools import lru_cache

WEEKDAYS = ["MO", "TU", "WE", "TH", "FR", "SA", "SU"]
FREQUENCIES = ["SECONDLY", "MINUTELY", "HOURLY", "DAILY", "WEEKLY", "MONTHLY", "YEARLY"]
UNIT = {"HOURLY": timedelta(hours=1), "MINUTELY": timedelta(minutes=1), "SECONDLY": timedelta(seconds=1)}
LAST_YEAR = 2200


class Rule:
    def __init__(self, text):
        parts = dict(part.split("=", 1) for part in text.upper().replace(" ", "").split(";") if "=" in part)
        self.frequency = parts.get("FREQ") if parts.get("FREQ") in FREQUENCIES else None
        self.interval = max(1, int(parts.get("INTERVAL", 1)))
        self.count = int(parts["COUNT"]) if "COUNT" in parts else None
        self.until = parts.get("UNTIL")
        self.week_start = WEEKDAYS.index(parts.get("WKST", "MO"))

        def numbers(name):
            return sorted({int(item) for item in parts.get(name, "").split(",") if item})

        self.seconds = sorted({min(second, 59) for second in numbers("BYSECOND")})
        self.minutes = numbers("BYMINUTE")
        self.hours = numbers("BYHOUR")
        self.month_days = numbers("BYMONTHDAY")
        self.year_days = numbers("BYYEARDAY")
        self.weeks = numbers("BYWEEKNO")
        self.months = numbers("BYMONTH")
        self.positions = numbers("BYSETPOS")
        self.days = {
            (int(number or 0), WEEKDAYS.index(day))
            for number, day in re.findall(r"([+-]?\d*)(MO|TU|WE|TH|FR|SA|SU)", parts.get("BYDAY", ""))
        }
        if self.frequency not in ("MONTHLY", "YEARLY") or self.weeks:
            self.days = {(0, day) for _, day in self.days}


@lru_cache(maxsize=None)
def days_of_month(year, month):
    return [date(year, month, day) for day in range(1, calendar.monthrange(year, month)[1] + 1)]


@lru_cache(maxsize=None)
def days_of_year(year):
    return [day for month in range(1, 13) for day in days_of_month(year, month)]


def week_of(day, week_start):
    """The seven days of the week that holds `day`."""
    first = day - timedelta(days=(day.weekday() - week_start) % 7)
    return [first + timedelta(days=index) for index in range(7)]


def weeks_of_year(year, week_start):
    """Week 1 first: each week that has at least four days in `year`."""
    week = week_of(date(year, 1, 4), week_start)
    weeks = []
    while sum(day.year == year for day in week) >= 4:
        weeks.append(week)
        week = [day + timedelta(days=7) for day in week]
    return weeks


def fits_month_day(day, numbers):
    length = calendar.monthrange(day.year, day.month)[1]
    return day.day in numbers or day.day - length - 1 in numbers


def fits_year_day(day, numbers):
    of_year = day.timetuple().tm_yday
    length = 366 if calendar.isleap(day.year) else 365
    return of_year in numbers or of_year - length - 1 in numbers


def fits_weekday(day, entries, stretch):
    """`stretch`: the days of the month or year in which a number counts."""
    same = [other for other in stretch if other.weekday() == day.weekday()]
    place = same.index(day) if day in same else None
    return any(
        weekday == day.weekday()
        and (number == 0 or place is not None and (place == number - 1 or place - len(same) == number))
        for number, weekday in entries
    )


def days_of_period(rule, first, start):
    """The days that the period which begins at `first` gives, before any time of day."""
    if rule.frequency == "DAILY":
        days = [first]
    elif rule.frequency == "WEEKLY":
        days = [day for day in week_of(first, rule.week_start)]
    elif rule.frequency == "MONTHLY":
        days = days_of_month(first.year, first.month)
    elif rule.weeks:
        weeks = weeks_of_year(first.year, rule.week_start)
        wanted = {number - 1 if number > 0 else len(weeks) + number for number in rule.weeks}
        days = [day for index, week in enumerate(weeks) if index in wanted for day in week]
    else:
        days = days_of_year(first.year)

    if rule.months:
        days = [day for day in days if day.month in rule.months]
    if rule.year_days:
        days = [day for day in days if fits_year_day(day, rule.year_days)]
    if rule.month_days:
        days = [day for day in days if fits_month_day(day, rule.month_days)]
        if rule.frequency == "YEARLY" and not (rule.months or rule.weeks or rule.year_days):
            days = [day for day in days if day.month == start.month]
    if rule.days:
        def stretch(day):
            if rule.frequency == "MONTHLY" or rule.months:
                return days_of_month(day.year, day.month)
            return days_of_year(day.year)
        days = [day for day in days if fits_weekday(day, rule.days, stretch(day))]
    if rule.days or rule.month_days or rule.year_days:
        return days

    # Nothing chooses the day: DTSTART does.
    if rule.frequency == "WEEKLY" or rule.weeks:
        return [day for day in days if day.weekday() == start.weekday()]
    if rule.frequency == "MONTHLY" or rule.frequency == "YEARLY" and rule.months:
        return [day for day in days if day.day == start.day]
    if rule.frequency == "YEARLY":
        return [day for day in days if (day.month, day.day) == (start.month, start.day)]
    return days


def chosen(items, positions):
    if not positions:
        return items
    return [item for index, item in enumerate(items) if index + 1 in positions or index - len(items) in positions]


def wall_clock_periods(rule, start, is_date):
    """For each period the local times it gives, whether before DTSTART or not."""
    hours = [start.hour] if is_date or not rule.hours else rule.hours
    minutes = [start.minute] if is_date or not rule.minutes else rule.minutes
    seconds = [start.second] if is_date or not rule.seconds else rule.seconds
    first = start.date()
    if rule.frequency == "WEEKLY":
        first = week_of(first, rule.week_start)[0]
    if rule.frequency in ("MONTHLY", "YEARLY"):
        first = first.replace(day=1)
    if rule.frequency == "YEARLY":
        first = first.replace(month=1)
    while first.year <= LAST_YEAR:
        times = [
            datetime(day.year, day.month, day.day, hour, minute, second)
            for day in days_of_period(rule, first, start.date())
            for hour in hours for minute in minutes for second in seconds
        ]
        yield first, chosen(times, rule.positions)
        if rule.frequency == "DAILY":
            first += timedelta(days=rule.interval)
        elif rule.frequency == "WEEKLY":
            first += timedelta(weeks=rule.interval)
        elif rule.frequency == "MONTHLY":
            months = first.year * 12 + first.month - 1 + rule.interval
            first = first.replace(year=months // 12, month=months % 12 + 1)
        else:
            first = first.replace(year=first.year + rule.interval)


def elapsed_periods(rule, start, zone, skip_to):
    """For each period the UTC times it gives. Periods that end before `skip_to` need not be given."""
    step = UNIT[rule.frequency] * rule.interval
    utc = zone.to_utc(start)
    if skip_to is not None and skip_to > utc:
        utc += step * max(0, (skip_to - utc) // step - 1)
    while utc.year <= LAST_YEAR:
        local = zone.to_local(utc)
        day = local.date()
        fits = (
            (not rule.months or day.month in rule.months)
            and (not rule.year_days or fits_year_day(day, rule.year_days))
            and (not rule.month_days or fits_month_day(day, rule.month_days))
            and (not rule.days or fits_weekday(day, rule.days, []))
            and (not rule.hours or local.hour in rule.hours)
            and (rule.frequency == "HOURLY" or not rule.minutes or local.minute in rule.minutes)
            and (rule.frequency != "SECONDLY" or not rule.seconds or local.second in rule.seconds)
        )
        minutes = rule.minutes if rule.frequency == "HOURLY" and rule.minutes else [local.minute]
        seconds = rule.seconds if rule.frequency != "SECONDLY" and rule.seconds else [local.second]
        times = [
            utc + timedelta(minutes=minute - local.minute, seconds=second - local.second)
            for minute in minutes for second in seconds
        ] if fits else []
        yield utc, chosen(times, rule.positions)
        utc += step


def until_test(rule, zone, is_date):
    """Whether an instance is not past UNTIL, which is a date, a local time or a UTC time."""
    text = rule.until
    if not text:
        return lambda local, utc: True
    if "T" not in text or is_date:
        last = datetime.strptime(text[:8], "%Y%m%d").date()
        return lambda local, utc: local.date() <= last
    last = datetime.strptime(text[:15], "%Y%m%dT%H%M%S")
    if text.endswith("Z"):
        return lambda local, utc: utc <= last
    return lambda local, utc: local <= last


def instances(rule, start, zone, is_date, window, with_start=True):
    """(local, UTC) of each instance that starts before the window's end; those before its start may be missing."""
    begin, end = window
    within = until_test(rule, zone, is_date)
    count = 0

    def admit(local, utc):
        nonlocal count
        if not within(local, utc) or rule.count is not None and count >= rule.count:
            return False
        count += 1
        return True

    if with_start:
        yield start, zone.to_utc(start)
        count += 1

    if rule.frequency in UNIT:
        first = zone.to_utc(start)
        far = begin if rule.count is None and not rule.positions else None
        for base, times in elapsed_periods(rule, start, zone, far):
            if base > end + timedelta(hours=1):
                return
            for utc in times:
                if utc < first or with_start and utc == first:
                    continue
                if not admit(zone.to_local(utc), utc):
                    return
                yield zone.to_local(utc), utc
        return

    for base, times in wall_clock_periods(rule, start, is_date):
        if datetime(base.year, base.month, base.day) > end + timedelta(days=9):
            return
        for local in times:
            if local < start or with_start and local == start:
                continue
            if not admit(local, zone.to_utc(local)):
                return
            yield local, zone.to_utc(local)
