#ifndef XMLDOCUMENT_H
#define XMLDOCUMENT_H

#include <QString>

#include <memory>
#include <pugixml.hpp>

namespace SorvinResultDataXml {

/// One parsed XML text. Borrows the text: it must outlive the object. Memory is proportional to the
/// text. Neither DTDs nor entities of their own are accepted. Throws std::bad_alloc only.
class XmlDocument
{
public:
    /// How much of an element stands in front of the error.
    enum Extent { NotEvenStartTag, StartTag, Whole };

    explicit XmlDocument(const QString& xml);
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    /// The root element, null when there is none.
    pugi::xml_node GetRoot() const { return root; }
    /// Reports that the root element is not one that the caller reads.
    void RejectRoot();

    /// Null when the text is well-formed and its root was not rejected; otherwise what is wrong, a
    /// text that lives for ever.
    const char* GetErrorText() const { return errorText; }
    /// Place of the error, both counted from 1; linear in the length of the text.
    void GetErrorPlace(int& line, int& column) const;

    /// Whole for a well-formed document. Linear in the length of \a element: ask only for elements
    /// that may be cut off, which are the root, and the last child of an element that is not whole.
    Extent GetExtent(const pugi::xml_node& element) const;

private:
    static const int kSmallSize = 4096;

    void Parse(char* buffer, size_t size);
    void CheckTopLevel();
    void Fail(const char* text, int index);
    int TextIndexOfByte(size_t offset) const;
    bool SkipTag(int& index, bool& closed) const;
    bool SkipPast(int& index, const char* terminator) const;

    const QString& xml;
    /// The text in UTF-8, which the tree below points into: in the fixed buffer when it fits,
    /// otherwise on the heap.
    char smallBuffer[kSmallSize];
    std::unique_ptr<char[]> largeBuffer;
    pugi::xml_document document;
    pugi::xml_node root;
    const char* errorText = nullptr;
    /// Index in the text at which the error was noticed; nothing at or behind it was read.
    int errorIndex = 0;
};

} // namespace SorvinResultDataXml

#endif
