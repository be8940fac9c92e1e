// Reads the XML form of a table piece by piece, for both ways in: from the nodes of a document, and
// straight from the tokenizer. The caller reports the children of "dataset" in document order:
//
//     Begin(attributes of "dataset")
//     per child "column":  ConstColumn(attributes, text of its first child)
//     per child "colinfo": Column(attributes)
//     per child "record" that has a child itself:
//         BeginRecord(row type), per child Field(name, text of its first child)
//         per child of its first "org_record": OriginalField(name, text), after BeginOriginal()
//         EndRecord()
//
// Texts are those of a first child that is a text or character data, else empty.
#pragma once

#include "Zn_Dataset.h"
#include "Zn_NamedStr.h"
#include "stream/variable_filler.h"

#include <cstdint>
#include <string_view>
#include <vector>

class Zn_DatasetXmlReader {
public:
    explicit Zn_DatasetXmlReader(Zn_Dataset& dataset);

    void Begin(const Zn_NamedStrList& attributes);
    void ConstColumn(const Zn_NamedStrList& attributes, std::u16string_view text);
    void Column(const Zn_NamedStrList& attributes);
    void BeginRecord(int rowType);
    void Field(std::u16string_view name, std::u16string_view text);
    // Whether the row wants originals: it is updated and has none yet. Begins them if so.
    bool BeginOriginal();
    void OriginalField(std::u16string_view name, std::u16string_view text);
    void EndRecord();
    // Whether the text asked for more places than it could fill: what came from then on was not kept.
    bool IsOverdrawn() const noexcept { return places_ < 0; }

private:
    int FindColumn(std::u16string_view name, int& guess) const;
    void Store(Zn_Record& record, int col, std::u16string_view text);
    void BeginValues(Zn_Record& record);
    void ColumnsChanged();

    // A value far behind the last one makes all places between absent ones, which a short text could do over and over
    // until no memory is left. So every field pays in some places, and empty ones are paid for.
    static constexpr std::int64_t kPlacesToStart = 8 << 20;
    static constexpr std::int64_t kPlacesPerField = 64;

    Zn_Dataset& dataset_;
    std::int64_t places_ = kPlacesToStart;
    zn::VariableFiller constColumns_;
    Zn_Record* row_ = nullptr;
    Zn_Record* original_ = nullptr;
    bool originalEnded_ = false;
    int rawRow_ = -1;
    int nextColumn_ = 0; // columns mostly come in list order
    int nextOriginalColumn_ = 0;
    std::vector<const Zn_ColInfo*> columns_; // of the table, in list order
    bool columnsChanged_ = false;
    int fieldCount_ = 0; // of the present record, its originals included
    int lastFieldCount_ = 0;
};
