#include "values/variant_array.h"

#include <utility>

// The copies noted by this thread's outermost copy, which it works off before it ends.
class Zn_Variant::ArrayBox::PendingCopies {
public:
    static constinit thread_local PendingCopies* current;

    PendingCopies() noexcept { current = this; }
    ~PendingCopies() { current = nullptr; }
    PendingCopies(const PendingCopies&) = delete;
    PendingCopies& operator=(const PendingCopies&) = delete;

    void Note(ArrayBox* box, const Zn_VariantList& source) noexcept
    {
        box->source_ = &source;
        box->next_ = first_;
        first_ = box;
    }
    // Makes them all, and those that turn up meanwhile.
    void Work()
    {
        while (ArrayBox* box = first_) {
            first_ = std::exchange(box->next_, nullptr);
            const Zn_VariantList* source = std::exchange(box->source_, nullptr);
            if (box->freed_)
                ArrayBox::Free(box);
            else
                box->list.AssignList(*source);
        }
    }

private:
    ArrayBox* first_ = nullptr;
};

constinit thread_local Zn_Variant::ArrayBox::PendingCopies* Zn_Variant::ArrayBox::PendingCopies::current = nullptr;

Zn_Variant::ArrayBox* Zn_Variant::ArrayBox::New()
{
    void* memory = _zn_malloc(static_cast<int>(sizeof(ArrayBox)));
    return memory ? new (memory) ArrayBox : nullptr;
}

Zn_Variant::ArrayBox* Zn_Variant::ArrayBox::NewCopy(const Zn_VariantList& source)
{
    ArrayBox* box = New();
    if (!box)
        return nullptr;
    if (PendingCopies::current) {
        PendingCopies::current->Note(box, source);
        return box;
    }
    PendingCopies copies;
    box->list.AssignList(source);
    copies.Work();
    return box;
}

void Zn_Variant::ArrayBox::Free(ArrayBox* box) noexcept
{
    if (box->source_) { // its place in the notes is needed until they are worked off
        box->freed_ = true;
        return;
    }
    box->~ArrayBox(); // the handler of the items sees to the depth of what is inside
    zn_free(box);
}

Zn_Variant::ArrayBox::DirectCopies::DirectCopies() noexcept : outer_(std::exchange(PendingCopies::current, nullptr)) {}

Zn_Variant::ArrayBox::DirectCopies::~DirectCopies()
{
    PendingCopies::current = outer_;
}
