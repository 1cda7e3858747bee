// Project files and archives. The first byte of an input chooses: the content of a project file, of the
// version that a digit tells or of the first, which gets a right checksum; a whole project file; a protocol's
// state; an element's.

#include "Orvel/store/COrvel.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/StoredProject.h"
#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"
#include "tests/desk/DeskFixture.h"
#include "tests/fuzz/Finding.h"

#include <QApplication>
#include <QBuffer>
#include <QCryptographicHash>

using namespace orvel::desk;
using namespace orvel::test;

namespace {

DeskFixture* desk = nullptr;
Document* document = nullptr;

QByteArray seal(const QByteArray& content, quint32 version)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CQtArchive archive(&buffer, CQtArchive::Save);
    archive << quint32(0x4F525650) << version << content
            << QCryptographicHash::hash(content, QCryptographicHash::Sha256);
    return buffer.data();
}

QByteArray write(const StoredProject& project)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    storedproject::write(project, buffer);
    return buffer.data();
}

StoredProject read(QByteArray file)
{
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    return storedproject::read(buffer);
}

/// What a file gives is written and read again without a change, and the document takes it or refuses it.
void openProject(const QByteArray& file)
{
    StoredProject project = read(file);
    const QByteArray written = write(project);
    mustHold(write(read(written)) == written, "a project survives saving and loading");
    if (!document->setContent(std::move(project.content)))
        return;
    document->getSnapshot();
    document->setContent(document->copyContent());
}

void loadElement(QByteArray state, CModelElement& element)
{
    QBuffer buffer(&state);
    buffer.open(QIODevice::ReadOnly);
    CQtArchive archive(&buffer, CQtArchive::Load);
    element.serialize(archive);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QApplication(*argc, *argv);
    desk = new DeskFixture;
    document = new Document(desk->plugins, QStringLiteral("P"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray content(reinterpret_cast<const char*>(data) + 1, static_cast<int>(size - 1));
    try {
        switch (data[0]) {
        case 'p':
            openProject(content);
            break;
        case 's':
            loadElement(content, document->getProtocol());
            break;
        case 'e': {
            CModelElement element;
            loadElement(content, element);
            break;
        }
        case '2':
        case '3':
        case '4':
            openProject(seal(content, data[0] - quint32('0')));
            break;
        default:
            openProject(seal(content, 1));
        }
    } catch (const qor::CFileException& error) {
        mustHold(error.getCode() != 0, "a refusal has a code");
    }
    return 0;
}
