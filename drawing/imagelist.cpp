#include "imagelist.h"

#include "errors.h"
#include "files/files.h"
#include "input.h"

#include <QFileInfo>
#include <QSet>

namespace {

/// Walks one folder, and those in it.
class FolderWalk {
public:
    FolderWalk(ImageList& list, bool recursive, const FileFacts& output)
        : list(list), recursive(recursive) {
        if (output.kind == FileKind::Folder)
            seen.insert(output.identity);
    }

    void walk(const QString& folder) {
        const qsizetype before = list.images.size();
        QList<FoundImage> folders{{folder, QString()}};
        seen.insert(factsOf(folder).identity);
        for (qsizetype i = 0; i < folders.size(); ++i)
            lookInto(folders[i], folders);
        if (list.images.size() == before)
            list.failures.append(QString("%1: no images in this folder").arg(folder));
    }

private:
    void lookInto(const FoundImage& folder, QList<FoundImage>& folders) {
        QStringList names;
        try {
            names = namesIn(folder.name);
        } catch (const FileError& error) {
            list.skipped.append(error.what());
        }
        const QString start = folder.name.endsWith('/') ? folder.name : folder.name + '/';
        const QString below = folder.below;
        for (const QString& name : names) {
            const FileFacts facts = factsOf(start + name);
            if (facts.kind != FileKind::Folder)
                consider(start + name, below, facts);
            else if (!name.startsWith('.') && isNew(start + name, facts))
                folders.append({start + name, below.isEmpty() ? name : below + '/' + name});
        }
    }

    /// Whether to go into a folder; through links one may come to the same again.
    bool isNew(const QString& name, const FileFacts& facts) {
        if (seen.contains(facts.identity))
            return false;
        seen.insert(facts.identity);
        if (!recursive)
            list.folders.append(name);
        return recursive;
    }

    void consider(const QString& name, const QString& below, const FileFacts& facts) {
        const bool hasPictureName = hasPictureEnding(name);
        const auto skip = [&](const char* reason) {
            list.skipped.append(QString("%1: %2").arg(name, reason));
        };
        if (facts.kind == FileKind::Other)
            skip("no file, but a device or a pipe");
        else if (facts.kind == FileKind::None)
            skip("leads to no file");
        else if (!facts.isReadable)
            skip("no permission to read it");
        else if (isPicture(name))
            list.images.append({name, below});
        else if (hasPictureName && facts.size == 0)
            skip("the file is empty");
        else if (hasPictureName)
            skip("is broken: not a picture in a format that is read here");
        else
            ++list.others;
    }

    ImageList& list;
    bool recursive;
    QSet<QString> seen; ///< identities of folders
};

} // namespace

ImageList findImages(const QStringList& inputs, bool recursive, const QString& output) {
    ImageList list;
    const FileFacts outputFacts = output.isEmpty() ? FileFacts() : factsOf(output);
    for (const QString& input : inputs) {
        if (input == "-" || factsOf(input).kind != FileKind::Folder) {
            list.images.append({input, QString()});
            continue;
        }
        list.hasFolder = true;
        FolderWalk(list, recursive, outputFacts).walk(input);
    }
    return list;
}
