// Points in time and spans between them, each one double of days.
//
// A date counts days from 30 December 1899 with the time of day as fraction. It is stored in the
// automation-date convention: below zero the whole part counts days backwards while the fraction
// still runs forward (-1.25 is 29 December 1899, 06:00). ToDouble, ordering and arithmetic use the
// linear count instead (-0.75 for the same moment); from 30 December 1899 on both are the same.
//
//     Zn_DateTime due(2004, 7, 15, 10, 30, 0);
//     due += Zn_DateTimeSpan(14, 0, 0, 0);
//     int weekday = due.GetDayOfWeek();          // 5, a Thursday
//
// Dates from 1 January 100 to 31 December 9999, 00:00, can be taken apart; outside that range the
// getters of the date answer -1 and those of the time 0. Nothing throws; both are plain values.
#pragma once

#include "Zn_Base.h"
#include "Zn_WString.h"

#include <concepts>
#include <ctime>

// A signed length of time in days. It converts to a double, which is also how spans are compared.
class ZN_API Zn_DateTimeSpan {
public:
    constexpr Zn_DateTimeSpan() noexcept = default;
    constexpr Zn_DateTimeSpan(double days) noexcept : days_(days) {}
    Zn_DateTimeSpan(std::int32_t days, int hours, int minutes, int seconds) noexcept
    {
        SetDateTimeSpan(days, hours, minutes, seconds);
    }
    // The sum of the parts; any part may be negative or larger than its unit.
    void SetDateTimeSpan(std::int32_t days, int hours, int minutes, int seconds) noexcept;

    // The whole length in one unit; all but the days are cut to a whole number.
    double GetTotalDays() const noexcept { return days_; }
    double GetTotalHours() const noexcept;
    double GetTotalMinutes() const noexcept;
    double GetTotalSeconds() const noexcept;
    // The parts, cut toward zero; those of a negative span are zero or negative. Callers rely on the
    // rounding: 5.787e-6 (half a second in days) is added to the fraction of a day, of an hour and of a
    // minute alike, so a span of -0.5 has -11 hours.
    std::int32_t GetDays() const noexcept;
    std::int32_t GetHours() const noexcept;
    std::int32_t GetMinutes() const noexcept;
    std::int32_t GetSeconds() const noexcept;

    constexpr operator double() const noexcept { return days_; }
    constexpr Zn_DateTimeSpan operator-() const noexcept { return -days_; }
    template <std::convertible_to<double> T>
    constexpr Zn_DateTimeSpan operator+(T days) const noexcept
    {
        return days_ + static_cast<double>(days);
    }
    template <std::convertible_to<double> T>
    constexpr Zn_DateTimeSpan operator-(T days) const noexcept
    {
        return days_ - static_cast<double>(days);
    }
    Zn_DateTimeSpan& operator+=(const Zn_DateTimeSpan& other) noexcept
    {
        days_ += other.days_;
        return *this;
    }
    Zn_DateTimeSpan& operator-=(const Zn_DateTimeSpan& other) noexcept
    {
        days_ -= other.days_;
        return *this;
    }

private:
    double days_ = 0.0;
};

class ZN_API Zn_DateTime {
public:
    constexpr Zn_DateTime() noexcept = default;
    // A linear count of days.
    Zn_DateTime(double days) noexcept : stored_(LinearToStored(days)) {}
    Zn_DateTime(std::integral auto days) noexcept : Zn_DateTime(static_cast<double>(days)) {}
    // Stays 0.0 when a field is invalid.
    Zn_DateTime(int year, int month, int day, int hour, int minute, int second) noexcept
    {
        SetDateTime(year, month, day, hour, minute, second);
    }

    // The platform's local time, to the second.
    static Zn_DateTime GetCurrentTime() noexcept;

    // 1, or 0 when a field is invalid (year 0-9999); the date is unchanged then.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second) noexcept;
    int SetDate(int year, int month, int day) noexcept { return SetDateTime(year, month, day, 0, 0, 0); }
    // A bare time of day, on day 0.
    int SetTime(int hour, int minute, int second) noexcept { return SetDateTime(1899, 12, 30, hour, minute, second); }
    // Reads the year from characters 0-3, the month from 4-5, the day from 6-7, as far as there are that
    // many, and sets midnight of that date. Always 1, also when the date is invalid and nothing is set.
    // Callers rely on characters 8-9, 10-11 and 12-13, where hours, minutes and seconds would stand, each
    // replacing the day in turn.
    int SetDateTime(const char16_t* text) noexcept;
    int SetDateTime(std::u16string_view text) noexcept;

    // -1 outside the range.
    int GetYear() const noexcept;
    int GetMonth() const noexcept;     // 1-12
    int GetDay() const noexcept;       // 1-31
    int GetDayOfWeek() const noexcept; // 1 = Sunday ... 7 = Saturday
    int GetDayOfYear() const noexcept; // 1-366
    // 0 outside the range.
    int GetHour() const noexcept;
    int GetMinute() const noexcept;
    int GetSecond() const noexcept;
    // Fills all but tm_isdst. Outside the range callers rely on getting the fields they passed, each less
    // what its count starts from (year 1900; month, day of week and day of year 1).
    void ConvertToTm(std::tm& out) const noexcept;

    // The linear count cut toward zero, clamped to 32 bits.
    std::int32_t ToInteger() const noexcept;
    double ToDouble() const noexcept { return StoredToLinear(stored_); }
    // Year less 1900, month less 1 and day of the week less 1, without separators; with a time of day also
    // " hh:mm:02d". Callers rely on that text as it stands ("01040604" for 15 July 2004); the format is ignored.
    Zn_WString ToString(const char16_t* format = nullptr) const;

    // The number as it is stored, and a date from such a number.
    constexpr double GetStored() const noexcept { return stored_; }
    static constexpr Zn_DateTime FromStored(double stored) noexcept
    {
        Zn_DateTime date;
        date.stored_ = stored;
        return date;
    }

    Zn_DateTime& operator=(double days) noexcept
    {
        stored_ = LinearToStored(days);
        return *this;
    }
    // Callers rely on results before 30 December 1899 being shifted: the sum is brought into the stored
    // form twice.
    Zn_DateTime operator+(const Zn_DateTimeSpan& span) const noexcept { return Shifted(span); }
    Zn_DateTime operator-(const Zn_DateTimeSpan& span) const noexcept { return Shifted(-span); }
    Zn_DateTime operator-(double days) const noexcept { return Shifted(-days); }
    Zn_DateTimeSpan operator-(const Zn_DateTime& other) const noexcept { return ToDouble() - other.ToDouble(); }
    Zn_DateTime& operator+=(const Zn_DateTimeSpan& span) noexcept { return *this = Shifted(span); }
    Zn_DateTime& operator-=(const Zn_DateTimeSpan& span) noexcept { return *this = Shifted(-span); }

    // Equality is that of the stored numbers, order that of the linear ones.
    friend bool operator==(const Zn_DateTime& a, const Zn_DateTime& b) noexcept { return a.stored_ == b.stored_; }
    friend std::partial_ordering operator<=>(const Zn_DateTime& a, const Zn_DateTime& b) noexcept
    {
        return a.ToDouble() <=> b.ToDouble();
    }

private:
    static double LinearToStored(double days) noexcept;
    static double StoredToLinear(double stored) noexcept;
    Zn_DateTime Shifted(double days) const noexcept { return LinearToStored(ToDouble() + days); }

    double stored_ = 0.0;
};
