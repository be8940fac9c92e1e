#include "system/native_path.h"

namespace zn {

NativePath::NativePath(Zn_NameArg path) : wide_(path.GetView())
{
    usable_ = !path.IsEmpty() && path.GetView().find(u'\0') == std::u16string_view::npos;
    if (!usable_ || !platform::TakesBytePaths())
        return;
    wide_.Replace(u'\\', u'/');
    bytes_.Set(wide_, wide_.GetLength(), 0);
    usable_ = Zn_WString(bytes_, bytes_.GetLength(), 0) == wide_;
}

NativePath::operator platform::PathText() const noexcept
{
    if (!usable_)
        return {nullptr, nullptr};
    if (platform::TakesBytePaths())
        return {nullptr, bytes_.GetText()};
    return {wide_.GetText(), nullptr};
}

Zn_WString NameOf(const platform::FolderSearch::Name& name)
{
    if (platform::TakesBytePaths())
        return {name.bytes.data(), static_cast<int>(name.bytes.size()), 0};
    return {name.wide};
}

} // namespace zn
