// An application's object as the value of a variant: an order with lines. The variant holds a counted reference; a
// script engine, or the operators below, see the object through its properties, methods and items.
#include "ZnClassLib.h"

#include <iostream>
#include <utility>
#include <vector>

namespace {

// What most objects answer. The two classes below say only what they have.
class Object : public Zn_VarObjectBase {
public:
    Zn_VarObjectCtx* GetContainedContext() override { return nullptr; }
    Zn_Result SetProperty(Zn_VarObjectCtx*, const char16_t*, const Zn_VariantList*, const Zn_Variant&) override
    {
        return -1;
    }
    Zn_Result CallMethod(Zn_VarObjectCtx*, const char16_t*, const Zn_VariantList*, Zn_Variant&) override { return -1; }
    int Reserved6() override { return 0; }
    int Reserved7() override { return 0; }
    // The property that stands for the object where a plain value is needed.
    const char16_t* GetDefaultProp() override { return u"total"; }
    int GetItemCount() override { return 0; }
    Zn_Result GetItem(int, Zn_Variant&) override { return -1; }
    Zn_Result GetItem(const Zn_WString&, Zn_Variant&) override { return -1; }
    int GetType() override { return 0; }
    void* GetInnerObject() override { return nullptr; }
};

class OrderLine : public Object {
public:
    OrderLine(Zn_WString product, const Zn_Currency& price, int quantity)
        : product_(std::move(product)), price_(price), quantity_(quantity)
    {
    }
    Zn_WString GetID() override { return product_; }
    Zn_Result GetProperty(Zn_VarObjectCtx*, const char16_t* name, const Zn_VariantList*, Zn_Variant& value) override
    {
        if (zn_stricmpW(name, u"product") == 0)
            value = product_;
        else if (zn_stricmpW(name, u"quantity") == 0)
            value = quantity_;
        else if (zn_stricmpW(name, u"total") == 0)
            Var_Mul(price_, quantity_, value); // CURRENCY times INTEGER is CURRENCY
        else
            return -1; // no such property
        return 0;
    }

private:
    Zn_WString product_;
    Zn_Variant price_;
    int quantity_;
};

class Order : public Object {
public:
    explicit Order(Zn_WString number) : number_(std::move(number)) {}

    Zn_WString GetID() override { return number_; }
    Zn_Result GetProperty(Zn_VarObjectCtx*, const char16_t* name, const Zn_VariantList*, Zn_Variant& value) override
    {
        if (zn_stricmpW(name, u"total") != 0)
            return -1;
        value = Zn_Currency();
        for (const Zn_Variant& line : lines_)
            value += line; // adds the line's total, its default property
        return 0;
    }
    // add(product, price, quantity) makes a line and returns it.
    Zn_Result CallMethod(Zn_VarObjectCtx*, const char16_t* name, const Zn_VariantList* args,
                         Zn_Variant& result) override
    {
        if (zn_stricmpW(name, u"add") != 0 || !args || args->Count() != 3)
            return -1;
        const Zn_WString product = args->GetItemNN(0)->ToString();
        const Zn_Currency price = args->GetItemNN(1)->ToCurrency();
        result.SetObject(nullptr, nullptr, new OrderLine(product, price, args->GetItemNN(2)->ToInteger()));
        lines_.push_back(result);
        return 0;
    }
    int GetItemCount() override { return static_cast<int>(lines_.size()); }
    Zn_Result GetItem(int index, Zn_Variant& value) override
    {
        if (index < 0 || index >= GetItemCount())
            return -1;
        value = lines_[static_cast<std::size_t>(index)];
        return 0;
    }
    Zn_Result GetItem(const Zn_WString& product, Zn_Variant& value) override
    {
        for (const Zn_Variant& line : lines_) {
            if (line.GetObject()->GetID() == product) {
                value = line;
                return 0;
            }
        }
        return -1;
    }

private:
    Zn_WString number_;
    std::vector<Zn_Variant> lines_;
};

void AddLine(const Zn_VarObject& order, const char16_t* product, const char16_t* price, int quantity)
{
    Zn_VariantList args;
    args.Add(Zn_Variant(product));
    args.Add(Zn_Variant(Zn_Currency(price)));
    args.Add(Zn_Variant(quantity));
    Zn_Variant line;
    order.CallMethod(order.GetContext(), u"add", &args, line);
}

} // namespace

int main()
{
    Zn_Variant order;
    order.SetObject(nullptr, nullptr, new Order(u"A-17")); // the last variant that refers to it deletes it
    const Zn_VarObject& object = *order.GetObject();
    AddLine(object, u"tea", u"2.5", 4);
    AddLine(object, u"cups", u"13.25", 2);

    for (int i = 0; i < object.GetItemCount(); ++i) {
        Zn_Variant line, quantity;
        object.GetItem(i, line);
        line.GetObject()->GetProperty(nullptr, u"quantity", nullptr, quantity);
        std::cout << quantity.ToInteger() << ' ' << line.GetObject()->GetID().ToUtf8() << ": "
                  << line.ToString().ToUtf8() << '\n';
    }

    // In an expression the order is worth its total.
    Zn_Variant discounted;
    Var_Sub(order, Zn_Variant(Zn_Currency(u"5.5")), discounted);
    std::cout << "order " << object.GetID().ToUtf8() << ": " << order.ToString().ToUtf8() << ", less 5.5 is "
              << discounted.ToString().ToUtf8() << '\n';
    return Var_Cmp(order, Zn_Variant(36.5), ZN_OP_EQUAL) ? 0 : 1;
}
