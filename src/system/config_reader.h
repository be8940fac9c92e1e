// What the readers of settings share: sections by name, entries of the present one.
#pragma once

#include "Zn_Config.h"

#include "foundation/id_index.h"

namespace zn {

class ConfigBuilder {
public:
    // The list is empty at the start.
    explicit ConfigBuilder(Zn_ConfigSectionList& list) noexcept : list_(list) {}

    // Begins a section. One of a name that was there before goes on with the first of all, as AddSection says.
    void Begin(const Zn_WString& name)
    {
        int index = 0;
        if (names_.Find(name) < 0) {
            names_.Add(name);
            Zn_ConfigSection section;
            section.id = name;
            index = list_.Add(section);
        }
        present_ = list_.GetSafeItem(index);
    }
    bool HasBegun() const noexcept { return present_ != nullptr; }
    void Add(const Zn_WString& name, const Zn_WString& value) { present_->AddItem(name, value); }

private:
    Zn_ConfigSectionList& list_;
    IdIndex names_;
    Zn_ConfigSection* present_ = nullptr;
};

} // namespace zn
