// The list behind an ARRAY variant, on the heap, and how arrays of arrays are copied without recursion.
#pragma once

#include "Zn_VariantList.h"

// Arrays within arrays may be nested deeper than the stack reaches. While a thread copies one, those
// inside it are only noted, and the outermost call works the notes off.
struct Zn_Variant::ArrayBox {
    // An empty list; null when memory runs out.
    static ArrayBox* New();
    // A copy of a list. Called while another copy is being made, the list is filled when that one is.
    static ArrayBox* NewCopy(const Zn_VariantList& source);
    static void Free(ArrayBox* box) noexcept;

    Zn_VariantList list;

private:
    class PendingCopies;
    friend class DirectCopies;

    ArrayBox* next_ = nullptr;               // of the notes
    const Zn_VariantList* source_ = nullptr; // still to be copied from
    bool freed_ = false;                     // while noted: nobody wants it any more

public:
    // While one lives, copies are made at once: for calls into objects of the application, which may
    // copy arrays of their own and look at them.
    class DirectCopies {
    public:
        DirectCopies() noexcept;
        ~DirectCopies();
        DirectCopies(const DirectCopies&) = delete;
        DirectCopies& operator=(const DirectCopies&) = delete;

    private:
        PendingCopies* outer_;
    };
};
