// Reads the XML message straight from the tokenizer into variables and tables, without a document in
// between. The outcome is that of loading the document first and walking it: text that turns out
// to be malformed counts up to the fault, as if every open element ended there.

#include "Zn_Stream.h"

#include "Zn_CodePage.h"
#include "Zn_DOMElement.h"
#include "dataset/dataset_access.h"
#include "dataset/dataset_xml_reader.h"
#include "foundation/encoding.h"
#include "foundation/id_index.h"
#include "foundation/vector_list.h"
#include "foundation/xml_escape.h"
#include "markup/charset_declaration.h"
#include "markup/tokenizer.h"
#include "stream/variable_xml_reader.h"

#include <optional>
#include <string>
#include <vector>

namespace {

using View = std::u16string_view;

// What a text run means as a value. Writers of messages put values there as they are, so blanks at its ends belong
// to it; white space with a line break or a tab in it is layout.
View ValueOf(View run, View trimmed)
{
    const auto isLayout = [](View ends) { return ends.find_first_not_of(u' ') != View::npos; };
    const auto front = static_cast<std::size_t>(trimmed.data() - run.data());
    const std::size_t back = front + trimmed.size();
    const std::size_t start = isLayout(run.substr(0, front)) ? front : 0;
    return run.substr(start, (isLayout(run.substr(back)) ? back : run.size()) - start);
}

// The first child of an element, as far as readers want it: its text when it is a text or character data.
class FirstChild {
public:
    void Clear() noexcept
    {
        text_ = {};
        seen_ = false;
    }
    View Text() const noexcept { return text_; }

    // A child without text.
    void OnNode() noexcept { seen_ = true; }
    void OnCData(View text) noexcept
    {
        if (!seen_)
            text_ = text;
        seen_ = true;
    }
    void OnText(View text)
    {
        if (seen_)
            return;
        seen_ = true;
        text_ = text;
        if (text.find(u'&') == View::npos)
            return;
        decoded_.clear();
        zn::AppendDecodedXml(text, decoded_);
        text_ = decoded_;
    }

private:
    View text_;
    std::u16string decoded_; // the text when it has references
    bool seen_ = false;
};

class MessageReader {
public:
    MessageReader(Zn_VariableList& variables, Zn_DatasetList& datasets) : params_(variables), datasets_(datasets) {}

    void Comment(View) {}
    void ProcInstr(View name, View attributes) { EmptyElement(name, attributes); }
    void Declaration(View name, View body)
    {
        if (!body.empty())
            EmptyElement(name, {});
    }
    void EmptyElement(View name, View attributes)
    {
        StartElement(name, attributes);
        EndElement({});
    }
    void StartElement(View name, View attributes);
    void EndElement(View);
    void TextRun(View run, View trimmed)
    {
        if (!trimmed.empty())
            Characters(ValueOf(run, trimmed), &FirstChild::OnText);
    }
    void CData(View text) { Characters(text, &FirstChild::OnCData); }

    // Ends every element that is still open.
    void Finish();
    // Whether there was a "root" with children and every table could be kept.
    bool IsGood() const noexcept { return rootChildren_ > 0 && !failed_; }
    unsigned CodePage() const { return codePage_; }

private:
    // Where the innermost element that is not skipped stands.
    enum class Place { Top, Root, Params, Param, Dataset, Column, Record, Field, Original, OriginalField };

    using Take = void (FirstChild::*)(View);
    void Characters(View text, Take take);
    FirstChild* OpenField() noexcept;
    void StartInTop(View name, View attributes);
    void StartInRoot(View name, View attributes);
    void StartInDataset(View name, View attributes);
    void StartInRecord(View name);
    void BeginDataset(View attributes);
    void EndDataset();
    void EnsureRecord();
    void Enter(Place place) noexcept { place_ = place; }
    void Skip() noexcept { skipped_ = 1; }
    void EnterField(Place place, View name);
    const Zn_NamedStrList& Parse(View attributes);

    zn::VariableXmlReader params_;
    Zn_DatasetList& datasets_;
    Place place_ = Place::Top;
    int skipped_ = 0; // open elements of the subtree that is being passed over
    bool rootSeen_ = false;
    bool paramsSeen_ = false;
    bool declarationSeen_ = false;
    int rootChildren_ = 0;
    unsigned codePage_ = ZnGetLocaleCP();

    zn::IdIndex datasetIds_;
    std::vector<Zn_Dataset*> byId_;
    bool failed_ = false;
    Zn_Dataset scratch_;
    std::optional<Zn_DatasetXmlReader> table_;
    Zn_DOMElement attributes_; // of the element that wants them later
    int rowType_ = 0;
    bool recordOpen_ = false;
    bool originalSeen_ = false;
    View fieldName_;
    View originalFieldName_;
    FirstChild field_; // of a column, param or field of a record
    FirstChild originalField_;
};

const Zn_NamedStrList& MessageReader::Parse(View attributes)
{
    attributes_.MakeVarList(attributes);
    return attributes_.attributes;
}

void MessageReader::StartElement(View name, View attributes)
{
    if (skipped_ > 0) {
        ++skipped_;
        return;
    }
    switch (place_) {
    case Place::Top:
        StartInTop(name, attributes);
        break;
    case Place::Root:
        StartInRoot(name, attributes);
        break;
    case Place::Params:
        if (zn_iequal(name, u"param")) {
            Parse(attributes);
            EnterField(Place::Param, name);
        } else {
            Skip();
        }
        break;
    case Place::Dataset:
        StartInDataset(name, attributes);
        break;
    case Place::Record:
        StartInRecord(name);
        break;
    case Place::Original:
        field_.OnNode();
        Enter(Place::OriginalField);
        originalFieldName_ = name;
        originalField_.Clear();
        break;
    case Place::OriginalField:
        originalField_.OnNode();
        Skip();
        break;
    default:
        field_.OnNode();
        Skip();
        break;
    }
}

void MessageReader::StartInTop(View name, View attributes)
{
    if (zn_iequal(name, u"xml") && !declarationSeen_) {
        declarationSeen_ = true;
        const Zn_WString& encoding = Parse(attributes).Str(u"encoding");
        if (!encoding.IsEmpty())
            codePage_ = zn_findcodepageW(encoding);
    }
    if (zn_iequal(name, u"root") && !rootSeen_) {
        rootSeen_ = true;
        Enter(Place::Root);
    } else {
        Skip();
    }
}

void MessageReader::StartInRoot(View name, View attributes)
{
    ++rootChildren_;
    if (zn_iequal(name, u"params") && !paramsSeen_) {
        paramsSeen_ = true;
        Enter(Place::Params);
    } else if (zn_iequal(name, u"dataset")) {
        BeginDataset(attributes);
        Enter(Place::Dataset);
    } else {
        Skip();
    }
}

void MessageReader::BeginDataset(View attributes)
{
    scratch_.SetId(Zn_WString());
    scratch_.ClearAll();
    table_.emplace(scratch_);
    table_->Begin(Parse(attributes));
}

// The table goes under its id; one of that id that came before gives up its contents.
void MessageReader::EndDataset()
{
    failed_ |= table_->IsOverdrawn();
    const Zn_WString id = scratch_.GetId();
    const int known = datasetIds_.Find(id);
    Zn_Dataset* target =
        known >= 0 ? byId_[static_cast<std::size_t>(known)] : Zn_DatasetAccess::AddEmpty(datasets_, id);
    if (!target) {
        failed_ = true;
        return;
    }
    if (known < 0) {
        datasetIds_.Add(id);
        byId_.push_back(target);
    }
    Zn_DatasetAccess::Move(*target, scratch_);
}

void MessageReader::StartInDataset(View name, View attributes)
{
    if (zn_iequal(name, u"record")) {
        rowType_ = attributes.empty() ? Zn_Record::Normal : Zn_Dataset::GetXmlTypeValue(Parse(attributes));
        recordOpen_ = false;
        originalSeen_ = false;
        Enter(Place::Record);
    } else if (zn_iequal(name, u"column")) {
        Parse(attributes);
        EnterField(Place::Column, name);
    } else {
        if (zn_iequal(name, u"colinfo"))
            table_->Column(Parse(attributes));
        Skip();
    }
}

// A record becomes a row with its first child.
void MessageReader::EnsureRecord()
{
    if (!recordOpen_)
        table_->BeginRecord(rowType_);
    recordOpen_ = true;
}

void MessageReader::StartInRecord(View name)
{
    EnsureRecord();
    EnterField(Place::Field, name);
    if (!originalSeen_ && zn_iequal(name, u"org_record")) {
        originalSeen_ = true;
        if (table_->BeginOriginal())
            Enter(Place::Original);
    }
}

void MessageReader::EnterField(Place place, View name)
{
    Enter(place);
    fieldName_ = name;
    field_.Clear();
}

void MessageReader::EndElement(View)
{
    if (skipped_ > 0) {
        --skipped_;
        return;
    }
    switch (place_) {
    case Place::Top:
        break;
    case Place::Root:
        Enter(Place::Top);
        break;
    case Place::Params:
        Enter(Place::Root);
        break;
    case Place::Param:
        params_.Param(attributes_.attributes, field_.Text());
        Enter(Place::Params);
        break;
    case Place::Dataset:
        EndDataset();
        Enter(Place::Root);
        break;
    case Place::Column:
        table_->ConstColumn(attributes_.attributes, field_.Text());
        Enter(Place::Dataset);
        break;
    case Place::Record:
        if (recordOpen_)
            table_->EndRecord();
        Enter(Place::Dataset);
        break;
    case Place::OriginalField:
        table_->OriginalField(originalFieldName_, originalField_.Text());
        Enter(Place::Original);
        break;
    case Place::Original:
    case Place::Field:
        table_->Field(fieldName_, field_.Text());
        Enter(Place::Record);
        break;
    }
}

// The element whose first child matters, if one is open.
FirstChild* MessageReader::OpenField() noexcept
{
    switch (place_) {
    case Place::Column:
    case Place::Param:
    case Place::Field:
    case Place::Original:
        return &field_;
    case Place::OriginalField:
        return &originalField_;
    default:
        return nullptr;
    }
}

void MessageReader::Characters(View text, Take take)
{
    if (skipped_ > 0 || text.empty())
        return;
    if (FirstChild* field = OpenField())
        (field->*take)(text);
    // Where names are expected, a text is a node without one; a column may have none either.
    if (place_ == Place::Root) {
        ++rootChildren_;
    } else if (place_ == Place::Record) {
        EnsureRecord();
        table_->Field({}, {});
    } else if (place_ == Place::Original) {
        table_->OriginalField({}, {});
    }
}

void MessageReader::Finish()
{
    skipped_ = 0;
    while (place_ != Place::Top)
        EndElement({});
}

// The whole document as wide text, in the encoding that it declares.
std::u16string DecodeDocument(const Zn_Buffer& in)
{
    const std::string_view bytes(reinterpret_cast<const char*>(in.GetData()), static_cast<std::size_t>(in.GetLength()));
    std::string encoding;
    const unsigned codePage = zn::FindXmlEncoding(bytes, encoding) ? zn_findcodepageA(encoding.c_str()) : 0;
    std::u16string text;
    zn::DecodeText(bytes, codePage, text);
    return text;
}

} // namespace

int ZnXmlStreamLoad(Zn_VariableList& variables, Zn_DatasetList& datasets, const Zn_Buffer& in, unsigned& codePage)
{
    bool isGood = false;
    codePage = ZnGetLocaleCP();
    const bool hasRoom = zn::Guarded([&] {
        const std::u16string text = DecodeDocument(in); // first: it may be a value in one of the lists
        variables.ReleaseList();
        datasets.ReleaseList();
        MessageReader reader(variables, datasets);
        zn::Tokenizer<MessageReader>(reader).Parse(text);
        reader.Finish();
        codePage = reader.CodePage();
        isGood = reader.IsGood();
    });
    return hasRoom && isGood ? datasets.Count() : -1;
}
