#include "reports/engine/XmlDocument.h"

#include "reports/engine/ReportError.h"
#include "reports/engine/ReportSchemaText.h"

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <limits>

namespace kintar::reports {
namespace {

template <class T>
using Owned = std::unique_ptr<T, void (*)(T*)>;

/// The first error that the library tells of: the later ones follow from it.
struct FirstError {
    long line = 0;
    std::string text;
};

void note(void* first, xmlErrorPtr error) {
    auto& kept = *static_cast<FirstError*>(first);
    if (!kept.text.empty() || error == nullptr || error->message == nullptr) {
        return;
    }
    kept.line = error->line;
    kept.text = error->message;
    // The namespace stands before every name; people know the names without it.
    const std::string space = "{urn:tarnholm:kintar3:report:1}";
    for (std::size_t at = kept.text.find(space); at != std::string::npos;
         at = kept.text.find(space)) {
        kept.text.erase(at, space.size());
    }
    while (!kept.text.empty() && (kept.text.back() == '\n' || kept.text.back() == ' ')) {
        kept.text.pop_back();
    }
}

std::string asText(const xmlChar* text) {
    return text == nullptr ? std::string() : reinterpret_cast<const char*>(text);
}

std::string takeText(xmlChar* text) {
    std::string taken = asText(text);
    xmlFree(text);
    return taken;
}

XmlElement elementFrom(xmlNode* node) {
    XmlElement element;
    element.name = asText(node->name);
    element.line = xmlGetLineNo(node);
    for (const xmlAttr* attribute = node->properties; attribute != nullptr;
         attribute = attribute->next) {
        element.attributes.emplace_back(asText(attribute->name),
                                        takeText(xmlGetNoNsProp(node, attribute->name)));
    }
    for (xmlNode* child = node->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) {
            element.children.push_back(elementFrom(child));
        } else if (child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE) {
            element.text += asText(child->content);
        }
    }
    return element;
}

Owned<xmlDoc> parsed(std::string_view text, const std::string& file) {
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw ReportError(file + ": too large for a report file");
    }
    const Owned<xmlParserCtxt> context(xmlNewParserCtxt(), xmlFreeParserCtxt);
    FirstError error;
    xmlSetStructuredErrorFunc(&error, note);
    Owned<xmlDoc> document(
        xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()), nullptr,
                          nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        xmlFreeDoc);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    if (!document) {
        const xmlError* last = xmlCtxtGetLastError(context.get());
        FirstError told = error;
        if (told.text.empty() && last != nullptr) {
            note(&told, const_cast<xmlError*>(last));
        }
        throw ReportError::atLine(file, told.line, told.text);
    }
    if (document->intSubset != nullptr) {
        throw ReportError(file + ": a report file has no document type");
    }
    return document;
}

void validate(xmlDoc& document, const std::string& file) {
    const std::string_view text = reportSchema();
    const Owned<xmlSchemaParserCtxt> parser(
        xmlSchemaNewMemParserCtxt(text.data(), static_cast<int>(text.size())),
        xmlSchemaFreeParserCtxt);
    const Owned<xmlSchema> schema(xmlSchemaParse(parser.get()), xmlSchemaFree);
    const Owned<xmlSchemaValidCtxt> validator(xmlSchemaNewValidCtxt(schema.get()),
                                              xmlSchemaFreeValidCtxt);
    FirstError error;
    xmlSchemaSetValidStructuredErrors(validator.get(), note, &error);
    if (xmlSchemaValidateDoc(validator.get(), &document) != 0) {
        throw ReportError::atLine(file, error.line, error.text);
    }
}

} // namespace

std::optional<std::string> XmlElement::attribute(std::string_view wanted) const {
    for (const auto& [known, value] : attributes) {
        if (known == wanted) {
            return value;
        }
    }
    return std::nullopt;
}

const XmlElement* XmlElement::child(std::string_view wanted) const {
    for (const XmlElement& element : children) {
        if (element.name == wanted) {
            return &element;
        }
    }
    return nullptr;
}

XmlElement parseReportXml(std::string_view text, const std::string& file) {
    const Owned<xmlDoc> document = parsed(text, file);
    validate(*document, file);
    return elementFrom(xmlDocGetRootElement(document.get()));
}

std::string_view reportSchema() {
    return reportSchemaText;
}

} // namespace kintar::reports
