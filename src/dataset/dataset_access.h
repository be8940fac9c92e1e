// What the message streams may do with a table beyond its public operations.
#pragma once

#include "Zn_DatasetList.h"
#include "dataset/dataset_xml_writer.h"

class Zn_DatasetAccess {
public:
    // Adds an empty table of an id that the list has not; null when there is no memory.
    static Zn_Dataset* AddEmpty(Zn_DatasetList& list, const Zn_WString& id);
    // Moves the contents of one table to another, which keeps an id of its own.
    static void Move(Zn_Dataset& target, Zn_Dataset& source) { target.TakeTable(source); }
    // The table's nodes, into any sink of the XML writer.
    template <class Sink>
    static void WriteXml(const Zn_Dataset& dataset, Sink& sink, int dataMode)
    {
        zn::DatasetXmlWriter<Sink> writer(dataset, dataset.rows_, dataset.orgBuffer_, sink);
        writer.Open();
        writer.WriteColumns();
        writer.WriteRows(dataMode);
        if (dataMode == 1 || dataMode == 2)
            writer.WriteDeleted();
        sink.Close();
    }
};
