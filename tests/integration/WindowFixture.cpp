#include "tests/integration/WindowFixture.h"

#include "Orvel/integration/OrvelGUIExtension.h"

#include <QDir>

void CollectingSDIApplication::showWarning(const QString& message, QObject* parent)
{
    warnings.append(message);
    warningParents.append(parent);
}

WindowFixture::WindowFixture()
    : application(QStringLiteral("survey"))
    , project(QStringLiteral("Проект 1"))
    , model(&project)
    , window(&model)
{
    COrvel::s_sysTemplateProtocolPath.clear();
}

WindowFixture::~WindowFixture() = default;

COrvel& WindowFixture::addProtocol()
{
    auto* protocol = new COrvel(&model, application.getUriScheme());
    model.addSystemItem(protocol, {});
    return *protocol;
}

OrvelGUIExtension& WindowFixture::addViewer()
{
    auto* viewer = new OrvelGUIExtension(&window, &window);
    window.addExtension(kOrvelItemType, viewer);
    return *viewer;
}

CModelElement* WindowFixture::addItem(LONGID id)
{
    auto item = std::make_unique<CModelElement>();
    item->setId(id);
    return model.addItem(std::move(item));
}

void WindowFixture::runProtocol(int protocolType, const QString& text, LONGID itemId)
{
    auto& protocol = dynamic_cast<COrvel&>(*model.getFirstItem(kOrvelItemType));
    const QString line =
        itemId == 0 ? text : QString::fromStdWString(protocol.GetItemLink(itemId, text.toStdWString()));
    protocol.ProtocolBegin(protocolType);
    protocol.AddMessageRaw(line, protocolType, COVMessage::Error);
    protocol.ProtocolEnd(protocolType);
}

QString WindowFixture::tempPath(const QString& fileName) const
{
    return QDir(Application::getTempFolder()).absoluteFilePath(fileName);
}

QStringList WindowFixture::getPages() const
{
    return QDir(Application::getTempFolder()).entryList({QStringLiteral("protocol_*.html")}, QDir::Files);
}
