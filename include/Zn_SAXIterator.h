// Streams through markup without building a tree: one pass over the text, a callback for each piece.
//
// Derive from Zn_SAXCtxHandler and hand it to an iterator, which does not own it:
//
//     MyHandler handler;
//     Zn_SAXIterator reader(&handler);
//     int whole = reader.Parse(text, length);      // 1: read to the end, every element closed
//
// The reader checks only that start and end tags nest. Entities stay as they are written: text goes
// through Zn_WString::DecodeXml where the caller wants it. The answer is 0 for malformed input (a
// comment, CDATA section or declaration without an end; an end tag without its element; elements left
// open); callbacks made before stand. Parsing takes time in proportion to the text, whatever it is.
#pragma once

#include "Zn_AString.h"
#include "Zn_WString.h"

// Text arguments point into the parsed text, are not terminated and live as long as the callback.
// Where a tag has no attributes they are null and 0. What a callback returns is not used.
class ZN_API Zn_SAXCtxHandler {
public:
    virtual ~Zn_SAXCtxHandler();

    // The encoding that 8-bit input declares, before anything else; 0 for an unknown name.
    virtual int OnCharSet(unsigned codePage) = 0;
    virtual int OnProcInstr(const char16_t* name, int nameLength, const char16_t* attributes, int length) = 0;
    // Only DOCTYPE is reported.
    virtual int OnDeclaration(const char16_t* name, int nameLength, const char16_t* body, int length) = 0;
    virtual int OnEmptyElement(const char16_t* name, int nameLength, const char16_t* attributes, int length) = 0;
    virtual int OnStartElement(const char16_t* name, int nameLength, const char16_t* attributes, int length) = 0;
    // The name as the start tag has it, with the length of the end tag's name.
    virtual int OnEndElement(const char16_t* name, int nameLength) = 0;
    // White space at either end of a text run.
    virtual int OnWhiteSpace(const char16_t* text, int length) = 0;
    // A text run without the white space at its ends.
    virtual int OnText(const char16_t* text, int length) = 0;
    virtual int OnCData(const char16_t* text, int length) = 0;
    virtual int OnComment(const char16_t* text, int length) = 0;

protected:
    Zn_SAXCtxHandler() = default;
    Zn_SAXCtxHandler(const Zn_SAXCtxHandler&) = default;
    Zn_SAXCtxHandler& operator=(const Zn_SAXCtxHandler&) = default;
};

class ZN_API Zn_SAXIterator {
public:
    explicit Zn_SAXIterator(Zn_SAXCtxHandler* handler) noexcept : handler_(handler) {}

    // 1, or 0 for malformed text or a null handler. An empty or null text gives 1 without callbacks; a
    // length of -1 means up to the terminator.
    int Parse(const char16_t* text, int length);
    // Converts from the encoding that the XML declaration names, else from codePage (0: the locale's).
    int Parse(const char* text, int length, unsigned codePage);

protected:
    // Length of the tag name just after "<" or "</"; 0 when that is no tag.
    static int GetTagName(const char16_t* at, int length) noexcept;
    // Where the tag ends whose name ends at `at`, or -1; skip becomes the characters up to what follows it.
    // Takes the kind of the node (16 to 18, 48, 153) and makes it 49 for "/>".
    static int FindBeginTagPos(const char16_t* at, int length, int& kind, int& skip) noexcept;
    // See Zn_XmlDOM.
    static int FindTag_A(const char* what, const char* text, int length) noexcept;
    static int GetCharSet_A(const char* text, int length, Zn_AString& name);

private:
    Zn_SAXCtxHandler* handler_;
};
