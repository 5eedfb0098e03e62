#include "abstractfiletypedetector.h"

#include <QByteArray>
#include <QSet>

#include <array>
#include <utility>

namespace {

using Extensions = QSet<QByteArray>;

/// In order of precedence: an extension that is in several lists is of the first one's type.
const std::array<std::pair<AbstractFileType, Extensions>, 4> &extensionsOfTypes()
{
    static const std::array<std::pair<AbstractFileType, Extensions>, 4> types{{
        {AbstractFileType::Video,
         {"3g2",  "3gp", "amv", "asf",  "avi", "divx", "drc",  "dv",   "f4a", "f4b",
          "f4p",  "f4v", "flv", "m1v",  "m2p", "m2t",  "m2ts", "m2v",  "m4p", "m4v",
          "mjpg", "mkv", "mov", "mp4",  "mpe", "mpeg", "mpg",  "mpg2", "mpv", "mts",
          "mxf",  "nsv", "ogg", "ogm",  "ogv", "qt",   "rm",   "rmvb", "roq", "svi",
          "ts",   "vob", "vro", "webm", "wm",  "wmv",  "wtv",  "xvid", "yuv"}},
        {AbstractFileType::Music,
         {"3gp",  "aa",  "aac",   "aax",  "ac3", "act", "aif", "aifc", "aiff", "amr",  "ape",
          "au",   "awb", "caf",   "dct",  "dff", "dsf", "dss", "dts",  "dvf",  "eac3", "ec3",
          "flac", "gsm", "iklax", "ivs",  "kar", "m3a", "m4a", "m4b",  "m4p",  "m4r",  "mid",
          "midi", "mka", "mmf",   "mp1",  "mp2", "mp3", "mpa", "mpc",  "msv",  "oga",  "ogg",
          "opus", "ra",  "ram",   "raw",  "rm",  "s3m", "sln", "snd",  "spx",  "tak",  "tta",
          "vox",  "wav", "weba",  "webm", "wma", "wv",  "xm"}},
        {AbstractFileType::Document,
         {"accdb", "accde", "accdr", "accdt", "azw",  "azw3", "chm",  "csv",  "djv",  "djvu",
          "doc",   "docb",  "docm",  "docx",  "dot",  "dotm", "dotx", "epub", "fb2",  "fodp",
          "fods",  "fodt",  "hwp",   "mdb",   "md",   "mobi", "odb",  "odc",  "odf",  "odg",
          "odm",   "odp",   "ods",   "odt",   "otg",  "otp",  "ots",  "ott",  "oxps", "pdf",
          "pot",   "potm",  "potx",  "ppa",   "ppam", "pps",  "ppsm", "ppsx", "ppt",  "pptm",
          "pptx",  "ps",    "pub",   "rtf",   "sdc",  "sdw",  "sldm", "sldx", "stc",  "stw",
          "sxc",   "sxg",   "sxi",   "sxm",   "sxw",  "tex",  "tsv",  "txt",  "uof",  "uot",
          "vsd",   "vsdx",  "wb2",   "wk1",   "wks",  "wpd",  "wps",  "wri",  "xla",  "xlam",
          "xlm",   "xls",   "xlsb",  "xlsm",  "xlsx", "xlt",  "xltm", "xltx", "xlw",  "xps"}},
        {AbstractFileType::Image,
         {"ai",  "apng", "arw", "avif", "bmp",  "cr2",  "cr3",  "cur", "dds", "dib", "dng",  "emf",
          "eps", "fpx",  "gif", "heic", "heif", "icns", "ico",  "j2c", "j2k", "jfi", "jfif", "jif",
          "jng", "jp2",  "jpe", "jpeg", "jpf",  "jpg",  "jpm",  "jpx", "jxl", "mng", "nef",  "orf",
          "pbm", "pcd",  "pct", "pcx",  "pgm",  "png",  "pnm",  "ppm", "psd", "raf", "rw2",  "sgi",
          "svg", "svgz", "tga", "tif",  "tiff", "wbmp", "webp", "wmf", "xbm", "xcf", "xpm"}},
    }};
    return types;
}

/// Lower case of ASCII letters only.
QByteArray lowerCaseExtension(const QString &fileName)
{
    return QStringView(fileName).sliced(fileName.lastIndexOf(u'.') + 1).toUtf8().toLower();
}

} // namespace

AbstractFileType AbstractFileTypeDetector::typeFromFileName(const QString &fileName) const
{
    const QByteArray extension = lowerCaseExtension(fileName);
    for (const auto &[type, extensions] : extensionsOfTypes()) {
        if (extensions.contains(extension))
            return type;
    }
    return AbstractFileType::Unknown;
}
