#include "Orvel/html/HtmlOutput.h"

#include "Orvel/html/PageEncoding.h"

namespace {

constexpr int kPieceSize = 1 << 15;

} // namespace

const HtmlOutput& HtmlOutput::operator<<(QLatin1String html) const
{
    buffer.append(html);
    flushPiece();
    return *this;
}

const HtmlOutput& HtmlOutput::operator<<(QStringView html) const
{
    buffer.append(html.data(), static_cast<int>(html.size()));
    flushPiece();
    return *this;
}

void HtmlOutput::flush() const
{
    if (!device)
        return;
    writeUtf8(buffer, *device);
    buffer.resize(0);
}

void HtmlOutput::flushPiece() const
{
    // A surrogate pair must stay together.
    if (device && buffer.size() >= kPieceSize && !buffer.at(buffer.size() - 1).isHighSurrogate())
        flush();
}
