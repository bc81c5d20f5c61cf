// Fills the classes of the library from the tree of a parsed document: the children of each known
// element are visited once, in document order; unknown elements and attributes are passed over.
// Missing or unreadable values keep the defaults of the classes. Invariant: below a root that is
// cut off by an error, only elements that are complete are taken (of a transmission inside a
// recording its start tag is enough, so that its complete data blocks are kept).
#include "xmlreader.h"

#include "xmldocument.h"
#include "xmlvalues.h"

#include <climits>
#include <cstring>
#include <memory>

namespace SorvinResultDataXml {

namespace {

/// Whether \a name is \a literal; most names differ in their first letter.
template <size_t size> bool Is(const char* name, const char (&literal)[size])
{
    return *name == *literal && std::strcmp(name + 1, literal + 1) == 0;
}

/// An element of the tree that knows how far it can be trusted.
class Element
{
public:
    Element(const XmlDocument& xml, const pugi::xml_node& element, XmlDocument::Extent known)
        : document(xml)
        , node(element)
        , extent(known)
    {
    }

    /// The extent of \a child of this element. Only the last child of an element that is cut off
    /// can be cut off itself.
    XmlDocument::Extent GetExtent(const pugi::xml_node& child) const
    {
        const bool last = extent != XmlDocument::Whole && !child.next_sibling();
        return last ? document.GetExtent(child) : XmlDocument::Whole;
    }

    const XmlDocument& document;
    const pugi::xml_node node;
    const XmlDocument::Extent extent;
};

QString ParseString(const char* text)
{
    const size_t size = std::strlen(text);
    return size == 0 ? QString() : ParseText(text, static_cast<int>(size));
}

/// The text of an element: its own value comes first, then the pieces between comments, sections
/// and foreign elements.
QString ReadText(const pugi::xml_node& node)
{
    QString text = ParseString(node.value());
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            text += ParseString(child.value());
    }
    return text;
}

TimeStamp ReadTimeStamp(const pugi::xml_node& node)
{
    TimeStamp stamp;
    for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
        const char* const name = a.name();
        if (Is(name, "time"))
            stamp.time = ParseTime(a.value());
        else if (Is(name, "position"))
            stamp.position = ParseInt(a.value(), 0);
        else if (Is(name, "quality"))
            stamp.quality = ParseInt(a.value(), stamp.quality);
        else if (Is(name, "spare1"))
            stamp.spare1 = ParseInt(a.value(), 0);
        else if (Is(name, "spare2"))
            stamp.spare2 = ParseInt(a.value(), 0);
    }
    return stamp;
}

/// The type as the constant itself where it is one: equal texts that share their data compare at
/// once.
QString ReadType(const char* text)
{
    const QString type = ParseString(text);
    for (const QString& known :
         {UserData::CallSignType, UserData::CommentType, UserData::ChangeType}) {
        if (type == known)
            return known;
    }
    return type;
}

void ReadUserData(const pugi::xml_node& node, UserData& userData)
{
    QString user;
    QDateTime modified;
    for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
        const char* const name = a.name();
        if (Is(name, "type"))
            userData.type = ReadType(a.value());
        else if (Is(name, "start"))
            userData.start = ParseInt(a.value(), 0);
        else if (Is(name, "end"))
            userData.end = ParseInt(a.value(), 0);
        else if (Is(name, "channel"))
            userData.channel = ParseInt(a.value(), -1);
        else if (Is(name, "user"))
            user = ParseString(a.value());
        else if (Is(name, "modified"))
            modified = ParseTime(a.value());
    }
    userData.SetModifier(user, modified);
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
        const char* const name = child.name();
        if (Is(name, "Text"))
            userData.text += ReadText(child);
        else if (Is(name, "Comment"))
            userData.comment += ReadText(child);
        else if (Is(name, "OldText"))
            userData.oldText += ReadText(child);
        else if (Is(name, "CallSign"))
            userData.callSign += ReadText(child);
    }
}

void ReadDataBlockAttributes(const pugi::xml_node& node, DataBlock& dataBlock)
{
    for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
        const char* const name = a.name();
        if (Is(name, "channel"))
            dataBlock.SetChannel(ParseInt(a.value(), -1));
        else if (Is(name, "id"))
            dataBlock.SetID(ParseInt(a.value(), 0));
        else if (Is(name, "position"))
            dataBlock.SetCharacterPosition(ParseInt(a.value(), 0));
        else if (Is(name, "code"))
            dataBlock.SetContentCode(ParseString(a.value()));
        else if (Is(name, "rtl"))
            dataBlock.SetContentDirectionRTL(ParseBool(a.value()));
    }
}

/// The siblings from \a node on, \a node included, that have its name and follow each other
/// directly.
int CountRun(pugi::xml_node node)
{
    int count = 0;
    for (; node && std::strcmp(node.name(), "TimeStamp") == 0; node = node.next_sibling())
        ++count;
    return count;
}

void Read(const Element& element, DataBlock& dataBlock)
{
    if (element.extent == XmlDocument::NotEvenStartTag)
        return;
    ReadDataBlockAttributes(element.node, dataBlock);
    QVector<TimeStamp>& stamps = dataBlock.GetTimeStamp();
    for (pugi::xml_node child = element.node.first_child(); child; child = child.next_sibling()) {
        if (element.GetExtent(child) != XmlDocument::Whole)
            continue;
        const char* const name = child.name();
        if (Is(name, "TimeStamp")) {
            if (stamps.isEmpty())
                stamps.reserve(CountRun(child));
            stamps.append(ReadTimeStamp(child));
        } else if (Is(name, "Content")) {
            dataBlock.AppendData(ReadText(child));
        } else if (Is(name, "UserData")) {
            std::unique_ptr<UserData> userData(new UserData);
            ReadUserData(child, *userData);
            dataBlock.GetUserData().append(userData.get());
            userData.release();
        }
    }
}

void Read(const Element& element, Transmission& transmission)
{
    if (element.extent == XmlDocument::NotEvenStartTag)
        return;
    for (pugi::xml_attribute a = element.node.first_attribute(); a; a = a.next_attribute()) {
        const char* const name = a.name();
        if (Is(name, "start"))
            transmission.SetStartTime(ParseTime(a.value()));
        else if (Is(name, "stop"))
            transmission.SetStopTime(ParseTime(a.value()));
    }
    for (pugi::xml_node child = element.node.first_child(); child; child = child.next_sibling()) {
        if (!Is(child.name(), "DataBlock") || element.GetExtent(child) != XmlDocument::Whole)
            continue;
        std::unique_ptr<DataBlock> dataBlock(new DataBlock);
        Read(Element(element.document, child, XmlDocument::Whole), *dataBlock);
        transmission.GetDataBlock().append(dataBlock.get());
        dataBlock.release();
    }
}

void AppendTransmission(const Element& element, SorvinResultData& resultData)
{
    if (element.extent == XmlDocument::NotEvenStartTag)
        return;
    std::unique_ptr<Transmission> transmission(new Transmission);
    resultData.GetTransmission().append(transmission.get());
    Read(element, *transmission.release());
}

void Read(const Element& element, SorvinResultData& resultData)
{
    if (Is(element.node.name(), "Transmission")) {
        AppendTransmission(element, resultData);
        return;
    }
    for (pugi::xml_node child = element.node.first_child(); child; child = child.next_sibling()) {
        if (Is(child.name(), "Transmission"))
            AppendTransmission(Element(element.document, child, element.GetExtent(child)),
                               resultData);
    }
}

bool IsRootOf(const char* name, const DataBlock&)
{
    return Is(name, "DataBlock");
}

bool IsRootOf(const char* name, const Transmission&)
{
    return Is(name, "Transmission");
}

bool IsRootOf(const char* name, const SorvinResultData&)
{
    return Is(name, "ResultData") || Is(name, "Transmission");
}

template <typename Object> ReadError ReadDocument(const QString& xml, Object& object) noexcept
{
    ReadError error;
    try {
        XmlDocument document(xml);
        const pugi::xml_node root = document.GetRoot();
        if (root && IsRootOf(root.name(), object))
            Read(Element(document, root, document.GetExtent(root)), object);
        else if (root)
            document.RejectRoot();
        error.text = document.GetErrorText();
        if (error.text)
            document.GetErrorPlace(error.line, error.column);
    } catch (...) {
        // Only memory can run out. The object owns what was completed before, and is as usable as
        // after any other error.
        error.text = "out of memory";
    }
    return error;
}

} // namespace

ReadError ReadXml(const QString& xml, DataBlock& dataBlock) noexcept
{
    return ReadDocument(xml, dataBlock);
}

ReadError ReadXml(const QString& xml, Transmission& transmission) noexcept
{
    return ReadDocument(xml, transmission);
}

ReadError ReadXml(const QString& xml, SorvinResultData& resultData) noexcept
{
    return ReadDocument(xml, resultData);
}

} // namespace SorvinResultDataXml
