// The table that the benchmarks work on: 8 columns of numbers and text, some of it beyond ASCII, the same at every run.
#pragma once

#include "Zn_Dataset.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

struct SampleRow {
    int id;
    double price;
    std::string name;    // about 18 characters
    std::string address; // about 40
    std::string date;    // 8 digits
    std::string country; // few distinct
    int quantity;
    double weight;
};

constexpr int kSampleColumns = 8;

inline std::vector<SampleRow> MakeSample(int rows)
{
    static const char* kWords[] = {
        "Seoul",  "M\xC3\xBCnchen", "river",      "Anna",   "street", "\xED\x95\x9C\xEA\xB5\xAD",
        "market", "north",          "S\xC3\xA3o", "garden", "Oslo",   "bridge",
        "Lima",   "tower"};
    static const char* kCountries[] = {"Korea", "Brazil", "Norway", "Germany", "Canada", "Peru", "Japan", "Chile"};
    std::mt19937 random(20040715);
    const auto below = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
    const auto text = [&](std::size_t length) {
        std::string made;
        while (made.size() < length) {
            made += kWords[below(14)];
            made += ' ';
        }
        made.pop_back();
        return made;
    };
    std::vector<SampleRow> sample;
    sample.reserve(static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i) {
        sample.push_back({static_cast<int>(below(1000000)), below(1000000) / 100.0, text(14), text(36),
                          std::to_string(20000101 + below(250000)), kCountries[below(8)], static_cast<int>(below(100)),
                          below(1u << 30) / 1048576.0});
    }
    return sample;
}

inline void AddSampleColumns(Zn_Dataset& table)
{
    table.AddColumn(u"id", Zn_ColInfo::Int, 4);
    table.AddColumn(u"price", Zn_ColInfo::Decimal, 8);
    table.AddColumn(u"name", Zn_ColInfo::String, 20);
    table.AddColumn(u"address", Zn_ColInfo::String, 60);
    table.AddColumn(u"date", Zn_ColInfo::Date, 8);
    table.AddColumn(u"country", Zn_ColInfo::String, 20);
    table.AddColumn(u"quantity", Zn_ColInfo::Int, 4);
    table.AddColumn(u"weight", Zn_ColInfo::Decimal, 8);
}

// The rows with their text as wide strings, so that filling a table times the table alone.
struct WideRow {
    const SampleRow* row;
    std::u16string name, address, date, country;
};

inline std::vector<WideRow> Widen(const std::vector<SampleRow>& sample)
{
    const auto wide = [](const std::string& text) {
        const Zn_WString converted = Zn_WString::FromUtf8(text);
        return std::u16string(converted.GetView());
    };
    std::vector<WideRow> rows;
    for (const SampleRow& row : sample)
        rows.push_back({&row, wide(row.name), wide(row.address), wide(row.date), wide(row.country)});
    return rows;
}

inline void FillTable(Zn_Dataset& table, const std::vector<WideRow>& rows)
{
    const int id = table.GetColIndex(u"id"), price = table.GetColIndex(u"price"), name = table.GetColIndex(u"name"),
              address = table.GetColIndex(u"address"), date = table.GetColIndex(u"date"),
              country = table.GetColIndex(u"country"), quantity = table.GetColIndex(u"quantity"),
              weight = table.GetColIndex(u"weight");
    for (const WideRow& wide : rows) {
        const int row = table.AppendRow(0);
        table.SetColumn(row, id, wide.row->id);
        table.SetColumn(row, price, wide.row->price);
        table.SetColumn(row, name, std::u16string_view(wide.name));
        table.SetColumn(row, address, std::u16string_view(wide.address));
        table.SetColumn(row, date, std::u16string_view(wide.date));
        table.SetColumn(row, country, std::u16string_view(wide.country));
        table.SetColumn(row, quantity, wide.row->quantity);
        table.SetColumn(row, weight, wide.row->weight);
    }
}
