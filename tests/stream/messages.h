// The real messages and the loads and saves that the tests of this folder share.
#pragma once

#include "Zn_Stream.h"

#include <fstream>
#include <iterator>
#include <string>

inline Zn_Buffer MakeBuffer(const std::string& bytes)
{
    Zn_Buffer buffer;
    buffer.Set(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    return buffer;
}

inline std::string BytesOf(const Zn_Buffer& buffer)
{
    return std::string(reinterpret_cast<const char*>(buffer.GetData()), static_cast<std::size_t>(buffer.GetLength()));
}

inline std::string StoreFile(const std::string& name)
{
    std::ifstream file(std::string(ZN_TEST_DATA) + "/store/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

struct Message {
    Zn_VariableList params;
    Zn_DatasetList tables;
    unsigned codePage = 0;

    int LoadBinary(const std::string& bytes) { return ZnBinStreamLoad(params, tables, MakeBuffer(bytes)); }
    int LoadXml(const std::string& bytes) { return ZnXmlStreamLoad(params, tables, MakeBuffer(bytes), codePage); }
    std::string Binary(int mode)
    {
        Zn_Buffer out;
        ZnBinStreamSave(params, tables, out, mode);
        return BytesOf(out);
    }
    std::string Xml(int mode, unsigned targetPage = 65001)
    {
        Zn_Buffer out;
        ZnXmlStreamSave(params, tables, out, targetPage, nullptr, mode);
        return BytesOf(out);
    }
};
