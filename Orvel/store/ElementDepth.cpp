// Qt calls this parser outdated and hides it, and its DOM uses it all the same. Another one would see other
// files.
#undef QT_DISABLE_DEPRECATED_BEFORE

#include "Orvel/store/ElementDepth.h"

#include <QXmlDefaultHandler>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

namespace {

/// Ends the parse as soon as an element lies too deep.
class DepthHandler : public QXmlDefaultHandler
{
public:
    explicit DepthHandler(int largestDepth) : limit(largestDepth) {}

    bool isExceeded() const { return depth > limit; }

    bool startElement(const QString& /*uri*/, const QString& /*localName*/, const QString& /*name*/,
                      const QXmlAttributes& /*attributes*/) override
    {
        ++depth;
        return !isExceeded();
    }

    bool endElement(const QString& /*uri*/, const QString& /*localName*/, const QString& /*name*/) override
    {
        --depth;
        return true;
    }

private:
    const int limit;
    int depth = 0;
};

} // namespace

namespace orvel::datafile {

bool isDeeperThan(int limit, QIODevice& device)
{
    DepthHandler handler(limit);
    QXmlInputSource source(&device);
    QXmlSimpleReader reader;
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    reader.setContentHandler(&handler);
    reader.parse(source);
    return handler.isExceeded();
}

} // namespace orvel::datafile

QT_WARNING_POP
