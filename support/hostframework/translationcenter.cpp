// The bundled translation centre. Names come from the load and unload hooks of libraries, which run
// before main as well as after it; translators exist only for names that are registered, and are
// installed only while there is an application object. Nothing here is deleted at the end of the
// process, so that a late hook still finds it.
#include "orvelappstartup/translationcenter.h"

#include "decodedtextcompat.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMap>
#include <QStringList>
#include <QTranslator>

namespace {

struct Registration
{
    int count = 0;
    QTranslator* translator = nullptr; // owned; null while nothing is installed
};

struct TranslationState
{
    TranslationCenter bundled;
    TranslationCenter* center = &bundled;
    QString folder;
    QMap<QString, Registration> registrations;
    bool startHooked = false;
};

TranslationState& State()
{
    static TranslationState* const state = new TranslationState;
    return *state;
}

QStringList SearchFolders(const QString& name)
{
    QStringList folders;
    const QString named = State().folder.isEmpty()
                              ? QFile::decodeName(qgetenv("HX_TRANSLATION_FOLDER"))
                              : State().folder;
    if (!named.isEmpty()) {
        folders << named;
    }
    return folders << QLatin1String(":/") + name << QLatin1String(":/translations");
}

/// The file for the first of the user's languages that has one; empty when there is none or English
/// comes first.
QString FindTranslation(const QString& name)
{
    const QStringList folders = SearchFolders(name);
    const QStringList languages = QLocale().uiLanguages();
    for (QString language : languages) {
        language.replace(QLatin1Char('-'), QLatin1Char('_'));
        for (QString locale = language; !locale.isEmpty();
             locale =
                 locale.left(qMax(0, static_cast<int>(locale.lastIndexOf(QLatin1Char('_')))))) {
            for (const QString& folder : folders) {
                const QString path = folder + QLatin1Char('/') + name + QLatin1Char('_') + locale +
                                     QLatin1String(".qm");
                if (QFileInfo(path).isFile()) {
                    return path;
                }
            }
        }
        // The texts in the sources are English: a language further down the list must not win over
        // it.
        const QString bare = language.section(QLatin1Char('_'), 0, 0);
        if (bare == QLatin1String("en") || bare == QLatin1String("C")) {
            return QString();
        }
    }
    return QString();
}

void Remove(Registration& registration)
{
    // The destructor takes it out of the application, if there is one.
    delete registration.translator;
    registration.translator = nullptr;
}

void Install(const QString& name, Registration& registration)
{
    Remove(registration);
    const QString path = FindTranslation(name);
    if (path.isEmpty()) {
        return;
    }
    QTranslator* const translator = new QTranslator;
    if (!translator->load(path)) {
        delete translator;
        return;
    }
    registration.translator = translator;
    QCoreApplication::installTranslator(translator);
}

void InstallAtApplicationStart()
{
    TranslationCenter::Refresh();
}

} // namespace

TranslationCenter::~TranslationCenter() {}

TranslationCenter& TranslationCenter::Instance()
{
    return *State().center;
}

void TranslationCenter::Register(const QString& name)
{
    DoRegister(name);
}

void TranslationCenter::Unregister(const QString& name)
{
    DoUnregister(name);
}

void TranslationCenter::DoRegister(const QString& name)
{
    TranslationState& state = State();
    if (!state.startHooked) {
        state.startHooked = true;
        DecodedTextCompat::RunAtApplicationStart(InstallAtApplicationStart);
    }
    Registration& registration = state.registrations[name];
    ++registration.count;
    if (registration.count == 1 && QCoreApplication::instance()) {
        Install(name, registration);
    }
}

void TranslationCenter::DoUnregister(const QString& name)
{
    const QMap<QString, Registration>::iterator found = State().registrations.find(name);
    if (found == State().registrations.end() || --found->count > 0) {
        return;
    }
    Remove(*found);
    State().registrations.erase(found);
}

void TranslationCenter::SetInstance(TranslationCenter* center)
{
    State().center = center ? center : &State().bundled;
}

void TranslationCenter::SetFolder(const QString& folder)
{
    State().folder = folder;
}

void TranslationCenter::Refresh()
{
    if (!QCoreApplication::instance()) {
        return;
    }
    const QStringList names = State().registrations.keys();
    for (const QString& name : names) {
        Install(name, State().registrations[name]);
    }
}
