#include "Zn_DateTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The calendar, by counting: an oracle that shares nothing with the library but the rule of leap years.
struct Calendar {
    int year = 100, month = 1, day = 1, weekday = 6, yearDay = 1; // 1 January 100 is a Friday

    bool Leap() const { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }
    int MonthLength() const
    {
        if (month == 2)
            return Leap() ? 29 : 28;
        return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
    }
    void Next()
    {
        weekday = weekday % 7 + 1;
        ++yearDay;
        if (++day <= MonthLength())
            return;
        day = 1;
        if (++month <= 12)
            return;
        month = 1;
        yearDay = 1;
        ++year;
    }
};

TEST(Zn_DateTime, EveryDayOfTheRange)
{
    Calendar expected;
    for (double stored = -657434; stored <= 2958465; ++stored, expected.Next()) {
        std::tm tm{};
        Zn_DateTime::FromStored(stored).ConvertToTm(tm);
        const bool right = tm.tm_year == expected.year - 1900 && tm.tm_mon == expected.month - 1 &&
                           tm.tm_mday == expected.day && tm.tm_wday == expected.weekday - 1 &&
                           tm.tm_yday == expected.yearDay - 1 && tm.tm_hour == 0 && tm.tm_min == 0 && tm.tm_sec == 0;
        ASSERT_TRUE(right) << stored << ": " << expected.year << "-" << expected.month << "-" << expected.day;
        Zn_DateTime made;
        ASSERT_EQ(made.SetDate(expected.year, expected.month, expected.day), 1);
        ASSERT_EQ(made.GetStored(), stored);
    }
    EXPECT_EQ(expected.year, 10000);
}

TEST(Zn_DateTime, EverySecondOfADay)
{
    for (const int year : {2004, 1850}) {
        for (int second = 0; second < 86400; ++second) {
            const Zn_DateTime made(year, 2, 28, second / 3600, second / 60 % 60, second % 60);
            ASSERT_EQ(made.GetHour() * 3600 + made.GetMinute() * 60 + made.GetSecond(), second);
            ASSERT_EQ(made.GetDay(), 28);
        }
    }
}

TEST(Zn_DateTime, Fields)
{
    struct Row {
        int fields[6];
        int result;
        double stored;
    };
    // Year 0 is below the range: kept, but can't be taken apart. Of each number sixteen bits count.
    const Row rows[] = {{{1899, 12, 30, 0, 0, 0}, 1, 0.0},       {{1900, 1, 1, 0, 0, 0}, 1, 2.0},
                        {{1899, 12, 29, 6, 0, 0}, 1, -1.25},     {{100, 1, 1, 0, 0, 0}, 1, -657434.0},
                        {{9999, 12, 31, 0, 0, 0}, 1, 2958465.0}, {{0, 1, 1, 0, 0, 0}, 1, -693959.0},
                        {{2004, 2, 29, 0, 0, 0}, 1, 38046.0},    {{2000, 2, 29, 0, 0, 0}, 1, 36585.0},
                        {{1900, 2, 29, 0, 0, 0}, 0, 7.0},        {{2003, 2, 29, 0, 0, 0}, 0, 7.0},
                        {{2004, 2, 30, 0, 0, 0}, 0, 7.0},        {{2004, 4, 31, 0, 0, 0}, 0, 7.0},
                        {{10000, 1, 1, 0, 0, 0}, 0, 7.0},        {{-1, 1, 1, 0, 0, 0}, 0, 7.0},
                        {{2004, 0, 1, 0, 0, 0}, 0, 7.0},         {{2004, 13, 1, 0, 0, 0}, 0, 7.0},
                        {{2004, 1, 0, 0, 0, 0}, 0, 7.0},         {{2004, 1, 1, 24, 0, 0}, 0, 7.0},
                        {{2004, 1, 1, 0, 60, 0}, 0, 7.0},        {{2004, 1, 1, 0, 0, 60}, 0, 7.0},
                        {{2004, 1, 1, 0, 0, -1}, 0, 7.0},        {{65536 + 2004, 2, 65536 + 29, 0, 0, 0}, 1, 38046.0}};
    for (const Row& row : rows) {
        const int(&f)[6] = row.fields;
        SCOPED_TRACE(testing::Message() << f[0] << "-" << f[1] << "-" << f[2] << " " << f[3] << ":" << f[4] << ":"
                                        << f[5]);
        Zn_DateTime date = Zn_DateTime::FromStored(7.0);
        EXPECT_EQ(date.SetDateTime(f[0], f[1], f[2], f[3], f[4], f[5]), row.result);
        EXPECT_EQ(date.GetStored(), row.stored);
        EXPECT_EQ(Zn_DateTime(f[0], f[1], f[2], f[3], f[4], f[5]).GetStored(), row.result ? row.stored : 0.0);
    }
    Zn_DateTime noon(2004, 7, 15, 1, 2, 3);
    EXPECT_EQ(noon.SetTime(12, 0, 0), 1);
    EXPECT_EQ(noon.GetStored(), 0.5);
    EXPECT_EQ(Zn_DateTime().GetDayOfWeek(), 7);
    EXPECT_EQ(Zn_DateTime(2004, 12, 31, 0, 0, 0).GetDayOfYear(), 366);
}

TEST(Zn_DateTime, RoundsToTheSecond)
{
    const double day = 38183; // 15 July 2004
    const Zn_DateTime late = Zn_DateTime::FromStored(day + (86399.6 / 86400));
    EXPECT_EQ(late.GetDay(), 16);
    EXPECT_EQ(late.GetHour() + late.GetMinute() + late.GetSecond(), 0);
    EXPECT_EQ(Zn_DateTime::FromStored(day + 86399.4 / 86400).GetSecond(), 59);
}

TEST(Zn_DateTime, OutsideTheRange)
{
    for (const double stored : {2958465.5, -657434.5, 1e300, -1e300, kNaN, std::numeric_limits<double>::infinity()}) {
        const Zn_DateTime date = Zn_DateTime::FromStored(stored);
        SCOPED_TRACE(stored);
        for (const int field :
             {date.GetYear(), date.GetMonth(), date.GetDay(), date.GetDayOfWeek(), date.GetDayOfYear()})
            EXPECT_EQ(field, -1);
        EXPECT_EQ(date.GetHour() + date.GetMinute() + date.GetSecond(), 0);
        EXPECT_EQ(date.ToString().ToUtf8(), "-1900-1-1");
        std::tm tm{};
        tm.tm_year = std::numeric_limits<int>::min();
        tm.tm_hour = 3;
        tm.tm_mday = 4;
        tm.tm_mon = 5;
        tm.tm_wday = 6;
        tm.tm_yday = 7;
        date.ConvertToTm(tm);
        EXPECT_EQ(tm.tm_year, std::numeric_limits<int>::max() - 1899);
        EXPECT_EQ(tm.tm_hour * 10000 + tm.tm_mday * 1000 + tm.tm_mon * 100 + tm.tm_wday * 10 + tm.tm_yday, 34456);
    }
}

TEST(Zn_DateTime, ReadsTextByPosition)
{
    const double july15 = 38183;
    using Row = std::pair<const char16_t*, double>;
    for (const auto& [text, stored] :
         {Row{u"20040715", july15}, Row{u"2004071523", july15 + 8}, Row{u"200407152301", july15 - 14},
          Row{u"20040715230117", july15 + 2}, Row{u"20040715103000", 7.0}, Row{u"200407", 7.0}, Row{u"2004", 7.0},
          Row{u"04", 7.0}, Row{u"", 7.0}, Row{u"2004-07-15", 7.0}, Row{u"200407159", july15},
          Row{u"20040715230117xyz", july15 + 2}, Row{nullptr, 7.0}}) {
        Zn_DateTime date = Zn_DateTime::FromStored(7.0);
        EXPECT_EQ(date.SetDateTime(text), 1);
        EXPECT_EQ(date.GetStored(), stored) << Zn_WString(text).ToUtf8();
    }
}

TEST(Zn_DateTime, WritesItsText)
{
    EXPECT_EQ(Zn_DateTime(2004, 7, 15, 0, 0, 0).ToString(), u"01040604");
    EXPECT_EQ(Zn_DateTime(2004, 7, 15, 10, 30, 2).ToString(u"ignored"), u"01040604 10:30:02d");
    EXPECT_EQ(Zn_DateTime().ToString(), u"-0011106");
}

TEST(Zn_DateTime, LinearAndStored)
{
    const std::pair<double, double> rows[] = {{0, 0}, {1.25, 1.25}, {-0.75, -1.25}, {-1, -1}, {-2.5, -3.5}};
    for (const auto& [linear, stored] : rows) {
        EXPECT_EQ(Zn_DateTime(linear).GetStored(), stored);
        EXPECT_EQ(Zn_DateTime::FromStored(stored).ToDouble(), linear);
        EXPECT_EQ(Zn_DateTime(linear).ToInteger(), static_cast<int>(linear));
    }
    EXPECT_EQ(Zn_DateTime(5u).GetStored(), 5.0);
    EXPECT_EQ(Zn_DateTime(1e300).ToInteger(), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(Zn_DateTime(-1e300).ToInteger(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(Zn_DateTime(kNaN).ToInteger(), 0);
    // Stored, the later time of a day before 1899 is the smaller number; the order is that of time.
    EXPECT_TRUE(Zn_DateTime(1850, 1, 1, 6, 0, 0) < Zn_DateTime(1850, 1, 1, 18, 0, 0));
    EXPECT_TRUE(Zn_DateTime(2004, 1, 1, 0, 0, 0) >= Zn_DateTime(2004, 1, 1, 0, 0, 0));
    EXPECT_TRUE(Zn_DateTime(1.0) != Zn_DateTime(2.0));
}

TEST(Zn_DateTime, Arithmetic)
{
    struct Row {
        double linear, span, stored;
    };
    for (const Row& row : {Row{10.5, 1.25, 11.75}, Row{10.5, -10.5, 0}, Row{0, -1, -1},
                           Row{0, -0.75, -2.75}, // brought into the stored form twice
                           Row{-3.5, 1.25, -4.25}}) {
        const Zn_DateTime date(row.linear);
        EXPECT_EQ((date + Zn_DateTimeSpan(row.span)).GetStored(), row.stored) << row.linear << " + " << row.span;
        EXPECT_EQ((date - Zn_DateTimeSpan(-row.span)).GetStored(), row.stored);
        Zn_DateTime changed = date;
        changed += row.span;
        EXPECT_EQ(changed.GetStored(), row.stored);
        changed = date;
        changed -= -row.span;
        EXPECT_EQ(changed.GetStored(), row.stored);
    }
    EXPECT_EQ((Zn_DateTime(5.0) - Zn_DateTime(-0.75)).GetTotalDays(), 5.75);
    EXPECT_EQ((Zn_DateTime(5.0) - 1.5).GetStored(), 3.5);
}

TEST(Zn_DateTime, CurrentTimeIsNow)
{
    const std::time_t before = std::time(nullptr);
    const Zn_DateTime now = Zn_DateTime::GetCurrentTime();
    std::tm tm{};
    now.ConvertToTm(tm);
    tm.tm_isdst = -1;
    const std::time_t read = std::mktime(&tm);
    EXPECT_LE(before, read + 1);
    EXPECT_LE(read, std::time(nullptr));
}

TEST(Zn_DateTimeSpan, Parts)
{
    struct Row {
        double days;
        int parts[4];
        double totals[3];
    };
    const Row rows[] = {
        {Zn_DateTimeSpan(1, 12, 0, 0), {1, 12, 0, 0}, {36, 2160, 129600}},
        {Zn_DateTimeSpan(0, 23, 59, 59), {0, 23, 59, 59}, {23, 1439, 86399}},
        {Zn_DateTimeSpan(-2, 0, 0, 0), {-2, 0, 0, 0}, {-47, -2879, -172799}},
        {-0.5, {0, -11, 0, 0}, {-11, -719, -43199}},
        {Zn_DateTimeSpan(0, 25, 61, 61), {1, 2, 2, 1}, {26, 1562, 93721}},
        {0.0, {0, 0, 0, 0}, {0, 0, 0}},
    };
    for (const Row& row : rows) {
        const Zn_DateTimeSpan span(row.days);
        SCOPED_TRACE(row.days);
        EXPECT_EQ(span.GetDays(), row.parts[0]);
        EXPECT_EQ(span.GetHours(), row.parts[1]);
        EXPECT_EQ(span.GetMinutes(), row.parts[2]);
        EXPECT_EQ(span.GetSeconds(), row.parts[3]);
        EXPECT_EQ(span.GetTotalDays(), row.days);
        EXPECT_EQ(span.GetTotalHours(), row.totals[0]);
        EXPECT_EQ(span.GetTotalMinutes(), row.totals[1]);
        EXPECT_EQ(span.GetTotalSeconds(), row.totals[2]);
    }
    EXPECT_EQ(Zn_DateTimeSpan(1e300).GetDays(), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(Zn_DateTimeSpan(kNaN).GetHours(), 0);
}

TEST(Zn_DateTimeSpan, Arithmetic)
{
    Zn_DateTimeSpan span(1.5);
    span += 0.5;
    span -= Zn_DateTimeSpan(1.0);
    EXPECT_EQ(span, 1.0);
    EXPECT_EQ((span + span - 0.5).GetTotalHours(), 36.0);
    EXPECT_EQ((-span).GetDays(), -1);
    EXPECT_TRUE(span < Zn_DateTimeSpan(1.25) && span >= 1.0 && span != Zn_DateTimeSpan());
}

} // namespace
