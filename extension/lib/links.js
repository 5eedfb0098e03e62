// Guesses the kind and name of a link's file from the link alone, without requests.

import { lastSegment } from './addresses.js';

/** File extensions by kind; any other extension is "other", and links without one are pages. */
const endings = {
    video: 'avi mkv mov mp4 m4v mpeg mpg ogv webm wmv flv 3gp ts m3u8 mpd',
    audio: 'aac aiff flac m3u m4a mp3 oga ogg opus wav wma mid midi',
    image: 'avif bmp gif heic ico jpeg jpg png svg tif tiff webp psd',
    document: 'pdf doc docx odt rtf txt epub mobi xls xlsx ods csv ppt pptx odp ps djvu md tex',
    archive: '7z bz2 cab gz iso lz4 rar tar tgz xz zip zst img dmg',
    program: 'apk appimage bin deb exe jar msi rpm run sh snap flatpak xpi crx',
};
const kindByEnding = new Map(Object.entries(endings).flatMap(
    ([kind, list]) => list.split(' ').map(ending => [ending, kind])));
const pageEndings = /^(html?|xhtml|php\d?|aspx?|jsp|cgi|do|action)$/;

/** The kinds in display order. */
export const kinds = [...Object.keys(endings), 'other', 'page'];

const nameInAddress = url => lastSegment(url);
const endingOf = name => /\.([a-z0-9]{1,8})$/i.exec(name)?.[1].toLowerCase() ?? '';

/** @param {{url: string, download: string|null}} link download: the attribute, null where there is none */
export function kindOf({ url, download }) {
    const ending = endingOf(download || '') || endingOf(nameInAddress(url));
    if (kindByEnding.has(ending))
        return kindByEnding.get(ending);
    return (ending === '' || pageEndings.test(ending)) && download === null ? 'page' : 'other';
}

/** The probable name of the file; else the text of the link, else its URL. */
export function nameOf({ url, download, text }) {
    return download || nameInAddress(url) || text || url;
}

/** Words of links that trigger an action (log out, delete), in the extension's languages. */
const acts = [
    'log ?(out|off)|sign ?(out|off)|delete|remove|unsubscribe|destroy|cancel|deactivate|disconnect|revoke|trash',
    'abmelden|ausloggen|löschen|entfernen|déconnexion|supprimer|uitloggen|afmelden|verwijderen|logga ut|ta bort|radera',
    'log(g)? u[dt]|slett?|fjern|kirjaudu ulos|poista|cerrar sesión|eliminar|borrar|esci|elimina|sair|terminar sessão|excluir|apagar',
    'deconectare|șterge|wyloguj|usuń|odhlásit|smazat|odstranit|kijelentkezés|törlés|çıkış|sil|αποσύνδεση|διαγραφή',
    'выйти|удалить|вийти|видалити|keluar|hapus|đăng xuất|xóa|تسجيل الخروج|حذف|התנתקות|התנתק|מחיקה|מחק',
].join('|');
/** The same in languages without spaces between words. */
const unspacedActs = '退出|注销|登出|删除|刪除|ログアウト|削除|로그아웃|삭제|ออกจากระบบ|ลบ';
/** Not \b, which supports ASCII letters only. */
const actsPattern = new RegExp(`(?<![\\p{L}\\p{N}])(${acts})(?![\\p{L}\\p{N}])|${unspacedActs}`, 'iu');

/** Whether requesting the link may have side effects, so that it is not selected by default. */
export function seemsToAct({ url, text }) {
    const { pathname, search } = new URL(url);
    const words = decodeLoosely(pathname + search).replace(/[^\p{L}\p{N}]+/gu, ' ');
    return actsPattern.test(words) || actsPattern.test(text ?? '');
}

function decodeLoosely(part) {
    try {
        return decodeURIComponent(part);
    } catch {
        return part;
    }
}
