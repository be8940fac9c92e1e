#include "Zn_DateTime.h"

#include "foundation/number_text.h"
#include "platform/platform.h"
#include "values/to_int32.h"

#include <cmath>

namespace {

constexpr double kMinute = 0.0006944444444444445;
constexpr double kSecond = 1.1574074074074073e-5;
constexpr double kHour = 0.041666666666666664;
constexpr double kHalfSecond = 5.787037037037037e-6;

constexpr double kFirstDay = -657434.0; // 1 January 100
constexpr double kLastDay = 2958465.0;  // 31 December 9999
constexpr int kDayZero = 693959;        // 30 December 1899, in days from the start of year 0

// Days before the first of each month in a common year.
constexpr int kMonthStart[13] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};

constexpr bool IsLeap(int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

struct Fields {
    int year, month, day;
    int weekday; // 1 = Sunday
    int yearDay; // from 1
    int hour, minute, second;
};

// Splits an absolute day number (above 0) into year, month and day, counting in cycles of 400, 100, 4 and 1 years.
void SplitDay(int days, Fields& out)
{
    const int cycle400 = days / 146097;
    int rest = days % 146097;
    const int cycle100 = (rest - 1) / 36524;
    int cycle4;
    int day; // within four years, then within the year, from 0
    bool leapCycle = true;
    if (cycle100 != 0) {
        rest = (rest - 1) % 36524;
        cycle4 = (rest + 1) / 1461;
        leapCycle = cycle4 != 0;
        day = leapCycle ? (rest + 1) % 1461 : rest;
    } else {
        cycle4 = rest / 1461;
        day = rest % 1461;
    }
    int year;
    if (leapCycle) {
        year = (day - 1) / 365;
        if (year != 0)
            day = (day - 1) % 365;
    } else {
        year = day / 365;
        day %= 365;
    }
    out.yearDay = day + 1;
    out.year = cycle400 * 400 + cycle100 * 100 + cycle4 * 4 + year;
    if (year == 0 && leapCycle) {
        if (day == 59) {
            out.month = 2;
            out.day = 29;
            return;
        }
        if (day > 59)
            --day;
    }
    ++day;
    out.month = (day >> 5) + 1;
    while (day > kMonthStart[out.month])
        ++out.month;
    out.day = day - kMonthStart[out.month - 1];
}

// False outside the range of dates that can be taken apart; out is untouched then.
bool Split(double stored, Fields& out)
{
    if (!(stored >= kFirstDay && stored <= kLastDay))
        return false;
    const double rounded = stored > 0 ? stored + kHalfSecond : stored - kHalfSecond;
    const int days = static_cast<int>(rounded) + kDayZero;
    const double size = std::fabs(rounded);
    const int seconds = static_cast<int>((size - std::floor(size)) * 86400.0);
    out.weekday = (days - 1) % 7 + 1;
    out.hour = seconds / 3600;
    out.minute = seconds / 60 % 60;
    out.second = seconds % 60;
    SplitDay(days, out);
    return true;
}

int FieldOr(double stored, int Fields::*field, int otherwise)
{
    Fields fields;
    return Split(stored, fields) ? fields.*field : otherwise;
}

// How far the parts of std::tm lie from ours; wraps, since a caller's tm may hold anything.
int Less(int value, int origin)
{
    return static_cast<int>(static_cast<unsigned>(value) - static_cast<unsigned>(origin));
}

// A part of a span: the fraction, a little rounded up, in smaller units.
std::int32_t SpanPart(double value, double units)
{
    double whole;
    const double part = std::trunc((std::modf(value, &whole) + kHalfSecond) * units);
    return zn::ToInt32(part >= units ? part - units : part);
}

} // namespace

double Zn_DateTime::StoredToLinear(double stored) noexcept
{
    if (stored >= 0)
        return stored;
    const double whole = std::ceil(stored);
    return whole - (stored - whole);
}

double Zn_DateTime::LinearToStored(double days) noexcept
{
    if (days >= 0)
        return days;
    const double whole = std::floor(days);
    return whole + (whole - days);
}

Zn_DateTime Zn_DateTime::GetCurrentTime() noexcept
{
    const zn::platform::ClockTime now = zn::platform::LocalTime();
    return Zn_DateTime(now.year, now.month, now.day, now.hour, now.minute, now.second);
}

int Zn_DateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) noexcept
{
    // Callers rely on 16 bits of each argument counting, without sign.
    const int y = static_cast<std::uint16_t>(year);
    const int mon = static_cast<std::uint16_t>(month);
    const int d = static_cast<std::uint16_t>(day);
    const int h = static_cast<std::uint16_t>(hour);
    const int min = static_cast<std::uint16_t>(minute);
    const int s = static_cast<std::uint16_t>(second);
    if (y > 9999 || mon < 1 || mon > 12 || d < 1 || h > 23 || min > 59 || s > 59)
        return 0;
    const bool leap = IsLeap(y);
    const int leapDay = leap && mon == 2 && d == 29 ? 1 : 0;
    if (d > kMonthStart[mon] - kMonthStart[mon - 1] + leapDay)
        return 0;
    int days = y * 365 + y / 4 - y / 100 + y / 400 + kMonthStart[mon - 1] + d;
    if (mon <= 2 && leap)
        --days;
    days -= kDayZero;
    const double time = (h * 3600 + min * 60 + s) * kSecond;
    stored_ = days + (days < 0 ? -time : time);
    return 1;
}

int Zn_DateTime::SetDateTime(const char16_t* text) noexcept
{
    return SetDateTime(text ? std::u16string_view(text) : std::u16string_view());
}

int Zn_DateTime::SetDateTime(std::u16string_view text) noexcept
{
    const auto part = [text](std::size_t start, std::size_t length) {
        return start + length <= text.size() ? zn::ReadInteger(text.substr(start, length)) : 0;
    };
    int day = 0;
    for (std::size_t start = 6; start <= 12 && start + 2 <= text.size(); start += 2)
        day = part(start, 2);
    SetDateTime(part(0, 4), part(4, 2), day, 0, 0, 0);
    return 1;
}

int Zn_DateTime::GetYear() const noexcept
{
    return FieldOr(stored_, &Fields::year, -1);
}

int Zn_DateTime::GetMonth() const noexcept
{
    return FieldOr(stored_, &Fields::month, -1);
}

int Zn_DateTime::GetDay() const noexcept
{
    return FieldOr(stored_, &Fields::day, -1);
}

int Zn_DateTime::GetDayOfWeek() const noexcept
{
    return FieldOr(stored_, &Fields::weekday, -1);
}

int Zn_DateTime::GetDayOfYear() const noexcept
{
    return FieldOr(stored_, &Fields::yearDay, -1);
}

int Zn_DateTime::GetHour() const noexcept
{
    return FieldOr(stored_, &Fields::hour, 0);
}

int Zn_DateTime::GetMinute() const noexcept
{
    return FieldOr(stored_, &Fields::minute, 0);
}

int Zn_DateTime::GetSecond() const noexcept
{
    return FieldOr(stored_, &Fields::second, 0);
}

void Zn_DateTime::ConvertToTm(std::tm& out) const noexcept
{
    Fields fields;
    if (Split(stored_, fields)) {
        out.tm_sec = fields.second;
        out.tm_min = fields.minute;
        out.tm_hour = fields.hour;
        out.tm_mday = fields.day;
        out.tm_mon = fields.month;
        out.tm_year = fields.year;
        out.tm_wday = fields.weekday;
        out.tm_yday = fields.yearDay;
    }
    out.tm_year = Less(out.tm_year, 1900);
    out.tm_mon = Less(out.tm_mon, 1);
    out.tm_wday = Less(out.tm_wday, 1);
    out.tm_yday = Less(out.tm_yday, 1);
}

std::int32_t Zn_DateTime::ToInteger() const noexcept
{
    return zn::ToInt32(ToDouble());
}

Zn_WString Zn_DateTime::ToString(const char16_t*) const
{
    std::tm tm{};
    ConvertToTm(tm);
    Zn_WString text;
    // Callers rely on month and weekday as tm counts them, and on both format strings as they stand.
    if (tm.tm_hour == 0 && tm.tm_min == 0 && tm.tm_sec == 0)
        text.Format(u"%04d%02d%02d", tm.tm_year, tm.tm_mon, tm.tm_wday);
    else
        text.Format(u"%04d%02d%02d %02d:%02d%:02d", tm.tm_year, tm.tm_mon, tm.tm_wday, tm.tm_hour, tm.tm_min,
                    tm.tm_sec);
    return text;
}

void Zn_DateTimeSpan::SetDateTimeSpan(std::int32_t days, int hours, int minutes, int seconds) noexcept
{
    days_ = minutes * kMinute + seconds * kSecond + hours * kHour + days;
}

double Zn_DateTimeSpan::GetTotalHours() const noexcept
{
    return std::trunc(days_ * 24 + kHalfSecond);
}

double Zn_DateTimeSpan::GetTotalMinutes() const noexcept
{
    return std::trunc(days_ * 1440 + kHalfSecond);
}

double Zn_DateTimeSpan::GetTotalSeconds() const noexcept
{
    return std::trunc(days_ * 86400 + kHalfSecond);
}

std::int32_t Zn_DateTimeSpan::GetDays() const noexcept
{
    return zn::ToInt32(days_);
}

std::int32_t Zn_DateTimeSpan::GetHours() const noexcept
{
    return SpanPart(days_, 24);
}

std::int32_t Zn_DateTimeSpan::GetMinutes() const noexcept
{
    return SpanPart(days_ * 24, 60);
}

std::int32_t Zn_DateTimeSpan::GetSeconds() const noexcept
{
    return SpanPart(days_ * 1440, 60);
}
