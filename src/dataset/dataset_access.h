// What the message streams may do with a table beyond its public operations.
#pragma once

#include "Zn_DatasetList.h"
#include "dataset/dataset_xml_writer.h"

class Zn_DatasetAccess {
public:
    // As Zn_DatasetList::AddDataset under the table's own id, but moves the contents instead of copying them: the
    // table given is empty afterwards. Returns the position, -1 when there is no memory.
    static int AddMoved(Zn_DatasetList& list, Zn_Dataset& dataset);
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
