// The binary message: a header, the variables, the tables (docs/formats/binary-message.md).

#include "Zn_Stream.h"

#include "foundation/byteorder.h"

namespace {

constexpr unsigned kVariablesCodePage = 0;
constexpr int kHeaderSize = 2;
constexpr int kZeroHeader = static_cast<std::int32_t>(0x83B10209);

} // namespace

int ZnBinStreamSave(const Zn_VariableList& variables, Zn_DatasetList& datasets, Zn_Buffer& out, int option)
{
    out.Release();
    zn::AppendBe16(out, static_cast<std::uint16_t>(datasets.Count() + 1));
    variables.Save(out, kVariablesCodePage);
    for (const Zn_Dataset& dataset : datasets) {
        if (dataset.Save(out, option) < 0) {
            out.Release();
            return -1;
        }
    }
    return out.GetLength();
}

int ZnBinStreamLoad(Zn_VariableList& variables, Zn_DatasetList& datasets, const Zn_Buffer& source)
{
    // It may be a value in one of the lists.
    const Zn_Buffer in(source); // NOLINT(performance-unnecessary-copy-initialization)
    variables.ReleaseList();
    datasets.ReleaseList();
    if (in.GetLength() < kHeaderSize || zn::GetBe16(in.GetData()) == 0)
        return kZeroHeader;
    int offset = variables.Load(in, kHeaderSize, kVariablesCodePage);
    if (offset < 0) {
        variables.ReleaseList();
        return offset;
    }
    for (int i = 0; offset < in.GetLength(); ++i) {
        Zn_Dataset* dataset = datasets.GetSafeItem(i, 1);
        if (!dataset)
            return -1;
        const int next = dataset->Load(in, offset);
        if (next < 0)
            return next;
        // A table that takes no byte would be read for ever.
        if (next <= offset)
            return -1;
        offset = next;
    }
    return datasets.Count();
}
