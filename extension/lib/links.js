// Guesses the kind and name of a link's file from the link alone, without requests.

import { lastSegment } from './addresses.js';

const pageEndings = /^(html?|xhtml|php\d?|aspx?|jsp|cgi|do|action)$/;

const nameInAddress = url => lastSegment(url);
const endingOf = name => /\.([a-z0-9]{1,8})$/i.exec(name)?.[1].toLowerCase() ?? '';

export class LinkKinds {
    /** In display order. */
    all;

    #byEnding;

    /** @param {Record<string, string[]>} fileTypes the file extensions by kind, as in filetypes.json */
    constructor(fileTypes) {
        this.all = [...Object.keys(fileTypes), 'other', 'page'];
        // An extension that several kinds have is of the first of them, as in the host.
        this.#byEnding = new Map(Object.entries(fileTypes).reverse().flatMap(
            ([kind, endings]) => endings.map(ending => [ending, kind])));
    }

    /**
     * Any extension that no kind has is "other", and links without one are pages.
     * @param {{url: string, download: string|null}} link download: the attribute, null where there is none
     */
    of({ url, download }) {
        const ending = endingOf(download || '') || endingOf(nameInAddress(url));
        const mayBePage = (ending === '' || pageEndings.test(ending)) && download === null;
        return this.#byEnding.get(ending) ?? (mayBePage ? 'page' : 'other');
    }
}

/** The probable name of the file; else the text of the link, else its URL. */
export function nameOf({ url, download, text }) {
    return download || nameInAddress(url) || text || url;
}

/** Words of links that trigger an action (log out, delete), in the extension's languages. */
const acts = [
    'log ?(out|off)|sign ?(out|off)|delete|remove|unsubscribe|destroy|cancel|deactivate|disconnect|revoke|trash',
    'abmelden|ausloggen|löschen|entfernen|déconnexion|supprimer|uitloggen|afmelden|verwijderen|logga ut|ta bort|radera',
    'log(g)? u[dt]|slett?|fjern|kirjaudu ulos|poista|cerrar sesión|eliminar|borrar|esci|elimina|sair|terminar sessão',
    'excluir|apagar',
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
