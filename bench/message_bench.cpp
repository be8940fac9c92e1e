// Messages in both encodings against pugixml and msgpack on the same table, and what a loaded table takes of memory.

#include "Zn_Stream.h"
#include "pairs.h"
#include "sample_table.h"

#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#if ZN_WITH_PUGIXML
#    include <pugixml.hpp>
#endif
#if ZN_WITH_MSGPACK
#    include <msgpack.hpp>
#endif

namespace {

constexpr int kRows = 100000;
constexpr int kManyRows = 1000000; // of the binary forms, and of the memory that loading takes

double CellsOf(int rows)
{
    return double(rows) * kSampleColumns;
}

// What the peers fill and pack: as large as a variant.
struct Cell {
    enum Kind : std::int64_t { Text, Integer, Decimal };
    std::int64_t kind;
    union {
        std::int64_t integer;
        double decimal;
        const char* text;
    };
    std::size_t length;
};
static_assert(sizeof(Cell) == 24);

struct Samples {
    int rows;
    std::vector<SampleRow> sample;
    Zn_VariableList params;
    Zn_DatasetList tables;
    Zn_Buffer binary;

    explicit Samples(int rowCount) : rows(rowCount), sample(MakeSample(rowCount))
    {
        Zn_Dataset table(u"sample", 65001);
        AddSampleColumns(table);
        FillTable(table, Widen(sample));
        tables.AddDataset(u"sample", &table);
        ZnBinStreamSave(params, tables, binary, 0);
    }
    Zn_Buffer Xml()
    {
        Zn_Buffer xml;
        ZnXmlStreamSave(params, tables, xml, 65001, nullptr, 0);
        return xml;
    }
    double Cells() const { return CellsOf(rows); }
};

void LoadXml(const Zn_Buffer& xml, int rows)
{
    Zn_VariableList params;
    Zn_DatasetList tables;
    unsigned codePage = 0;
    ZnXmlStreamLoad(params, tables, xml, codePage);
    Require(tables[0]->GetRowCount() == rows, "rows of the XML message");
    benchmark::DoNotOptimize(tables);
}

void LoadBinary(const Zn_Buffer& binary, int rows)
{
    Zn_VariableList params;
    Zn_DatasetList tables;
    ZnBinStreamLoad(params, tables, binary);
    Pairs::Untimed([&] {
        Require(tables[0]->GetRowCount() == rows, "rows of the binary message");
        tables.ReleaseList();
    });
}

#if ZN_WITH_PUGIXML
void PugixmlLoad(const Zn_Buffer& xml)
{
    pugi::xml_document document;
    document.load_buffer(xml.GetData(), static_cast<std::size_t>(xml.GetLength()), pugi::parse_default,
                         pugi::encoding_utf8);
    std::vector<Cell> cells;
    for (pugi::xml_node record : document.child("root").child("dataset").children("record")) {
        for (pugi::xml_node field : record.children()) {
            const char* name = field.name();
            Cell cell{};
            const pugi::xml_text text = field.text();
            if (std::strcmp(name, "id") == 0 || std::strcmp(name, "quantity") == 0)
                cell.integer = text.as_int();
            else if (std::strcmp(name, "price") == 0 || std::strcmp(name, "weight") == 0)
                cell.decimal = text.as_double();
            else
                cell.length = std::strlen(cell.text = text.get());
            cells.push_back(cell);
        }
    }
    Require(cells.size() == std::size_t(CellsOf(kRows)), "cells of pugixml");
}

void PugixmlSave(const std::vector<SampleRow>& sample)
{
    pugi::xml_document document;
    pugi::xml_node dataset = document.append_child("root").append_child("dataset");
    const auto add = [](pugi::xml_node record, const char* name, auto value) {
        record.append_child(name).append_child(pugi::node_pcdata).text().set(value);
    };
    for (const SampleRow& row : sample) {
        pugi::xml_node record = dataset.append_child("record");
        add(record, "address", row.address.c_str());
        add(record, "country", row.country.c_str());
        add(record, "date", row.date.c_str());
        add(record, "id", row.id);
        add(record, "name", row.name.c_str());
        add(record, "price", row.price);
        add(record, "quantity", row.quantity);
        add(record, "weight", row.weight);
    }
    struct Writer : pugi::xml_writer {
        std::string out;
        void write(const void* data, std::size_t size) override { out.append(static_cast<const char*>(data), size); }
    } writer;
    document.save(writer, "\t", pugi::format_default, pugi::encoding_utf8);
    Require(writer.out.size() > 10000000, "document of pugixml");
}
#endif

#if ZN_WITH_MSGPACK
// The peer's cells, in the order in which a table keeps its columns. Their text is the samples' own.
std::vector<Cell> MakeCells(const std::vector<SampleRow>& sample)
{
    std::vector<Cell> cells;
    const auto addText = [&](const std::string& text) {
        cells.push_back({Cell::Text, {.text = text.data()}, text.size()});
    };
    const auto addInteger = [&](int value) { cells.push_back({Cell::Integer, {.integer = value}, 0}); };
    const auto addDecimal = [&](double value) { cells.push_back({Cell::Decimal, {.decimal = value}, 0}); };
    for (const SampleRow& row : sample) {
        addText(row.address);
        addText(row.country);
        addText(row.date);
        addInteger(row.id);
        addText(row.name);
        addDecimal(row.price);
        addInteger(row.quantity);
        addDecimal(row.weight);
    }
    return cells;
}

// The peer has less to do than a table: its cells stand in one array instead of behind rows and pointers that
// can be shared, and their text is UTF-8 already, while a table's is UTF-16 and converted on the way.
void MsgpackEncode(const std::vector<Cell>& cells, msgpack::sbuffer& out)
{
    msgpack::packer<msgpack::sbuffer> packer(out);
    packer.pack_array(static_cast<std::uint32_t>(cells.size() / kSampleColumns));
    int column = 0;
    for (const Cell& cell : cells) {
        if (column == 0)
            packer.pack_array(kSampleColumns);
        column = (column + 1) % kSampleColumns;
        if (cell.kind == Cell::Integer) {
            packer.pack(cell.integer);
        } else if (cell.kind == Cell::Decimal) {
            packer.pack(cell.decimal);
        } else {
            packer.pack_str(static_cast<std::uint32_t>(cell.length));
            packer.pack_str_body(cell.text, static_cast<std::uint32_t>(cell.length));
        }
    }
}

// Here, too, the peer has less to do: its text stays where the message has it, while a table owns a copy in UTF-16
// of each, and its cells go into one array.
struct CellVisitor : msgpack::null_visitor {
    std::vector<Cell> cells;
    bool visit_positive_integer(std::uint64_t value)
    {
        cells.push_back({Cell::Integer, {.integer = static_cast<std::int64_t>(value)}, 0});
        return true;
    }
    bool visit_float64(double value)
    {
        cells.push_back({Cell::Decimal, {.decimal = value}, 0});
        return true;
    }
    bool visit_str(const char* text, std::uint32_t size)
    {
        cells.push_back({Cell::Text, {.text = text}, size});
        return true;
    }
};

void MsgpackDecode(const msgpack::sbuffer& packed, double cells)
{
    auto visitor = std::make_unique<CellVisitor>();
    std::size_t offset = 0;
    msgpack::parse(packed.data(), packed.size(), offset, *visitor);
    Pairs::Untimed([&] {
        Require(visitor->cells.size() == std::size_t(cells), "cells of msgpack");
        visitor.reset();
    });
}

// The peer at our work: it packs the cells of a table, and its visitor fills one, as a program would that keeps its
// data in tables and sends it with msgpack.
void MsgpackEncodeTable(const Zn_Dataset& table, msgpack::sbuffer& out)
{
    msgpack::packer<msgpack::sbuffer> packer(out);
    packer.pack_array(static_cast<std::uint32_t>(table.GetRowCount()));
    for (int row = 0; row < table.GetRowCount(); ++row) {
        packer.pack_array(kSampleColumns);
        for (int col = 0; col < kSampleColumns; ++col) {
            const Zn_Variant* cell = table.GetColumn(row, col);
            switch (cell->type) {
            case Zn_Variant::Integer:
                packer.pack(cell->ToInteger());
                break;
            case Zn_Variant::Decimal:
                packer.pack(cell->ToDouble());
                break;
            default: {
                const std::string text = cell->GetConstStr()->ToUtf8();
                packer.pack_str(static_cast<std::uint32_t>(text.size()));
                packer.pack_str_body(text.data(), static_cast<std::uint32_t>(text.size()));
            }
            }
        }
    }
}

struct TableVisitor : msgpack::null_visitor {
    Zn_Dataset& table;
    int row = 0, col = kSampleColumns;

    explicit TableVisitor(Zn_Dataset& filled) : table(filled) {}
    template <class Value>
    bool Put(const Value& value)
    {
        if (col == kSampleColumns) {
            row = table.AppendRow(0);
            col = 0;
        }
        return table.SetColumn(row, col++, value) >= 0;
    }
    bool visit_positive_integer(std::uint64_t value) { return Put(static_cast<int>(value)); }
    bool visit_float64(double value) { return Put(value); }
    bool visit_str(const char* text, std::uint32_t size) { return Put(Zn_WString::FromUtf8({text, size})); }
};

void MsgpackDecodeTable(const msgpack::sbuffer& packed, const Zn_Buffer& binary)
{
    Zn_Dataset table(u"sample", 65001);
    AddSampleColumns(table);
    TableVisitor visitor(table);
    std::size_t offset = 0;
    msgpack::parse(packed.data(), packed.size(), offset, visitor);
    Pairs::Untimed([&] {
        Zn_DatasetList tables;
        tables.AddDataset(u"sample", &table);
        Zn_Buffer out;
        ZnBinStreamSave(Zn_VariableList(), tables, out, 0);
        Require(out == binary, "cells of msgpack's table");
        table.ClearAll();
    });
}
#endif

// Peak memory in MB of a process of its own that does the work.
template <class Work>
double PeakOf(Work work)
{
    const pid_t child = fork();
    if (child == 0) {
        work();
        std::fflush(stdout); // which _exit does not do
        _exit(0);
    }
    rusage usage{};
    int status = 0;
    wait4(child, &status, 0, &usage);
    return double(usage.ru_maxrss) / 1024;
}

// Bytes of memory that the process has now, without what its heap would give back.
std::size_t MemoryInUse()
{
    malloc_trim(0);
    std::size_t pages = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void ReportMemory(int rows)
{
    std::fflush(stdout); // or every process made below prints it again
    char path[] = "message_bench_XXXXXX";
    const int file = mkstemp(path);
    // Made in a process of its own, so that nothing of it is counted below.
    PeakOf([&] {
        const Zn_Buffer xml = Samples(rows).Xml();
        if (write(file, xml.GetData(), static_cast<std::size_t>(xml.GetLength())) != xml.GetLength())
            _exit(1);
    });
    const auto read = [&](Zn_Buffer& xml) {
        const auto length = static_cast<int>(lseek(file, 0, SEEK_END));
        if (pread(file, xml.GetSafeBuffer(length), static_cast<std::size_t>(length), 0) != length)
            _exit(1);
    };
    PeakOf([&] {
        Zn_Buffer xml;
        read(xml);
        Zn_VariableList params;
        Zn_DatasetList tables;
        unsigned codePage = 0;
        const std::size_t before = MemoryInUse();
        ZnXmlStreamLoad(params, tables, xml, codePage);
        const std::size_t growth = MemoryInUse() - before;
        std::size_t text = 0;
        for (int row = 0; row < rows; ++row) {
            for (int col = 0; col < kSampleColumns; ++col)
                text += sizeof(char16_t) * std::size_t(tables[0]->GetColumn(row, col)->GetConstStr()->GetLength());
        }
        std::printf(
            "%d rows: XML message %.1f MB; a table loaded from it takes %.1f MB, of which text (UTF-16) %.1f MB\n",
            rows, xml.GetLength() / 1e6, double(growth) / 1e6, double(text) / 1e6);
        std::printf("beside the text %.1f bytes per cell (beside 2.5 times the text %.1f)\n",
                    (double(growth) - double(text)) / CellsOf(rows),
                    (double(growth) - 2.5 * double(text)) / CellsOf(rows));
    });
    const double peak = PeakOf([&] {
        Zn_Buffer xml;
        read(xml);
        LoadXml(xml, rows);
    });
    close(file);
    unlink(path);
    std::printf("peak memory of loading it: %.0f MB\n", peak);
}

void AddXml(Pairs& pairs, Samples& samples)
{
    const auto xml = std::make_shared<Zn_Buffer>(samples.Xml());
    const Pairs::Work work{samples.Cells(), double(xml->GetLength())};
    std::function<void()> load, save;
#if ZN_WITH_PUGIXML
    load = [=] { PugixmlLoad(*xml); };
    save = [&samples] { PugixmlSave(samples.sample); };
#endif
    pairs.Add(
        "XML message to tables", work, [=, &samples] { LoadXml(*xml, samples.rows); }, load, "pugixml");
    pairs.Add(
        "tables to XML message", work,
        [=, &samples] {
            const Zn_Buffer saved = samples.Xml();
            Pairs::Untimed([&] { Require(saved == *xml, "bytes of the XML message"); });
        },
        save, "pugixml");
}

void AddBinary(Pairs& pairs, Samples& samples, const std::string& name)
{
    const Pairs::Work work{samples.Cells(), double(samples.binary.GetLength())};
    std::function<void()> encode, decode, encodeTable, decodeTable;
#if ZN_WITH_MSGPACK
    const auto cells = std::make_shared<std::vector<Cell>>(MakeCells(samples.sample));
    const auto packed = std::make_shared<msgpack::sbuffer>();
    MsgpackEncode(*cells, *packed);
    encode = [=] {
        msgpack::sbuffer out;
        MsgpackEncode(*cells, out);
        Require(out.size() == packed->size(), "length of msgpack");
    };
    decode = [=] { MsgpackDecode(*packed, double(cells->size())); };
    encodeTable = [=, &samples] {
        msgpack::sbuffer out;
        MsgpackEncodeTable(*samples.tables[0], out);
        Require(out.size() == packed->size(), "length of msgpack from a table");
    };
    decodeTable = [=, &samples] { MsgpackDecodeTable(*packed, samples.binary); };
#endif
    const auto ourEncode = [&samples] {
        Zn_Buffer out;
        ZnBinStreamSave(samples.params, samples.tables, out, 0);
        Pairs::Untimed([&] { Require(out == samples.binary, "bytes of the binary message"); });
    };
    const auto ourDecode = [&samples] { LoadBinary(samples.binary, samples.rows); };
    pairs.Add("tables to binary message" + name, work, ourEncode, encode, "msgpack");
    pairs.Add("binary message to tables" + name, work, ourDecode, decode, "msgpack");
    pairs.Add("the same, msgpack from tables" + name, work, ourEncode, encodeTable, "msgpack");
    pairs.Add("the same, msgpack to tables" + name, work, ourDecode, decodeTable, "msgpack");
}

} // namespace

int main(int argc, char** argv)
{
    ReportMemory(kRows);
    ReportMemory(kManyRows);
    std::fflush(stdout);
    Samples few(kRows), many(kManyRows);
    Pairs pairs;
    AddXml(pairs, few);
    AddBinary(pairs, few, "");
    AddBinary(pairs, many, ", 1,000,000 rows");
    return pairs.Run(argc, argv);
}
