#include "Orvel/html/HtmlOutput.h"

#include <QIODevice>
#include <QTextCodec>

#include <algorithm>

namespace orvel {

namespace {

constexpr int kPieceSize = 1 << 15;

QTextEncoder* makeEncoder()
{
    return QTextCodec::codecForName("UTF-8")->makeEncoder(QTextCodec::IgnoreHeader);
}

} // namespace

HtmlOutput::HtmlOutput(QString& text) : target(text), device(nullptr)
{}

HtmlOutput::HtmlOutput(QIODevice& file) : target(piece), device(&file), encoder(makeEncoder())
{}

HtmlOutput& HtmlOutput::operator<<(QLatin1String html)
{
    target.append(html);
    if (device && target.size() >= kPieceSize)
        flush();
    return *this;
}

HtmlOutput& HtmlOutput::operator<<(QStringView html)
{
    if (!device) {
        target.append(html.data(), static_cast<int>(html.size()));
        return *this;
    }
    while (!html.isEmpty()) {
        const auto count = std::min<qsizetype>(html.size(), kPieceSize - target.size());
        target.append(html.data(), static_cast<int>(count));
        html = html.mid(count);
        if (target.size() >= kPieceSize)
            flush();
    }
    return *this;
}

void HtmlOutput::flush()
{
    if (!device)
        return;
    device->write(encoder->fromUnicode(target));
    target.resize(0);
}

} // namespace orvel
