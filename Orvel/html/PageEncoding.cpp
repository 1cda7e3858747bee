#include "Orvel/html/PageEncoding.h"

#include <QIODevice>
#include <QStringView>

#include <algorithm>

namespace {

constexpr int kPieceSize = 1 << 20;

} // namespace

void writeUtf8(const QString& html, QIODevice& device)
{
    const QStringView view(html);
    const int size = html.size();
    int begin = 0;
    while (begin < size) {
        int end = std::min(begin + kPieceSize, size);
        // A surrogate pair must stay together.
        if (end < size && view[end - 1].isHighSurrogate())
            ++end;
        device.write(view.mid(begin, end - begin).toUtf8());
        begin = end;
    }
}
