<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="id_ID" sourcelanguage="en_US">
<context>
    <name>Extension</name>
    <message>
        <source>Hands downloads over to the Kovalo download manager.</source>
        <extracomment>Shown in the browser&apos;s list of extensions</extracomment>
        <translation>Menyerahkan unduhan ke manajer unduhan Kovalo.</translation>
    </message>
    <message>
        <source>Options</source>
        <extracomment>Button and link
----------
Title of a page</extracomment>
        <translation>Opsi</translation>
    </message>
    <message>
        <source>Help and problems</source>
        <extracomment>Button and link to the page that explains the extension and checks it</extracomment>
        <translation>Bantuan dan masalah</translation>
    </message>
    <message>
        <source>Why?</source>
        <extracomment>Button beside a text on a problem; opens the page that finds the cause</extracomment>
        <translation>Mengapa?</translation>
    </message>
    <message>
        <source>Try again</source>
        <extracomment>Button</extracomment>
        <translation>Coba lagi</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <extracomment>Button that takes away a text on a problem</extracomment>
        <translation>Sembunyikan</translation>
    </message>
    <message>
        <source>Copy</source>
        <extracomment>Button that copies a command</extracomment>
        <translation>Salin</translation>
    </message>
    <message>
        <source>Copied</source>
        <extracomment>The same button for a moment afterwards</extracomment>
        <translation>Tersalin</translation>
    </message>
    <message>
        <source>Downloads go to Kovalo.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Unduhan diserahkan ke Kovalo.</translation>
    </message>
    <message>
        <source>Downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Unduhan tetap di peramban.</translation>
    </message>
    <message>
        <source>Kovalo is not connected, so downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Kovalo tidak tersambung, jadi unduhan tetap di peramban.</translation>
    </message>
    <message>
        <source>Catch downloads</source>
        <extracomment>Switch: downloads that begin in the browser are handed over
----------
A link of the chain: an option that may be off</extracomment>
        <translation>Tangkap unduhan</translation>
    </message>
    <message>
        <source>Not on $HOST$</source>
        <extracomment>Switch: downloads from this server stay in the browser</extracomment>
        <translation>Tidak di $HOST$</translation>
    </message>
    <message>
        <source>Keep the next download in the browser</source>
        <extracomment>Name of a keyboard shortcut, in the browser&apos;s list
----------
Button that stays pressed until the next download</extracomment>
        <translation>Biarkan unduhan berikutnya di peramban</translation>
    </message>
    <message>
        <source>Or hold $KEY$ while you click a link.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>Atau tahan $KEY$ saat mengeklik tautan.</translation>
    </message>
    <message>
        <source>Shortcut for the next one: $KEYS$.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>Pintasan untuk berikutnya: $KEYS$.</translation>
    </message>
    <message>
        <source>No key</source>
        <extracomment>Choice among keys</extracomment>
        <translation>Tanpa tombol</translation>
    </message>
    <message>
        <source>Last downloads</source>
        <extracomment>Heading of a list</extracomment>
        <translation>Unduhan terakhir</translation>
    </message>
    <message>
        <source>No download has been caught yet.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Belum ada unduhan yang ditangkap.</translation>
    </message>
    <message>
        <source>Download</source>
        <extracomment>In place of a file&apos;s name that is not known</extracomment>
        <translation>Unduhan</translation>
    </message>
    <message>
        <source>Handed over to Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Diserahkan ke Kovalo</translation>
    </message>
    <message>
        <source>Declined in Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Ditolak di Kovalo</translation>
    </message>
    <message>
        <source>Kept in the browser</source>
        <extracomment>State of a download that was not handed over because the user or an option said so</extracomment>
        <translation>Tetap di peramban</translation>
    </message>
    <message>
        <source>Stays in the browser: $REASON$</source>
        <extracomment>State of a download that could not be handed over; the reason is a sentence</extracomment>
        <translation>Tetap di peramban: $REASON$</translation>
    </message>
    <message>
        <source>Saved twice: by the browser and by Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Tersimpan dua kali: oleh peramban dan oleh Kovalo</translation>
    </message>
    <message>
        <source>There are two copies of $NAME$: the browser had finished when Kovalo took it.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Ada dua salinan $NAME$: peramban sudah selesai saat Kovalo mengambilnya.</translation>
    </message>
    <message>
        <source>The browser goes on with $NAME$. Kovalo was asked to take it and has not answered, so it may have it, too.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Peramban melanjutkan $NAME$. Kovalo diminta dan belum menjawab, jadi mungkin ia juga memilikinya.</translation>
    </message>
    <message>
        <source>The download of $NAME$ broke off. Begin it again on its page.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Unduhan $NAME$ terputus. Mulai lagi dari halamannya.</translation>
    </message>
    <message>
        <source>In the browser, perhaps in Kovalo, too</source>
        <extracomment>State of a download</extracomment>
        <translation>Di peramban, mungkin juga di Kovalo</translation>
    </message>
    <message>
        <source>Broke off; begin it again on its page</source>
        <extracomment>State of a download</extracomment>
        <translation>Terputus; mulai lagi dari halamannya</translation>
    </message>
    <message>
        <source>On this page</source>
        <extracomment>Heading of a list of videos and sounds</extracomment>
        <translation>Di halaman ini</translation>
    </message>
    <message>
        <source>No video has been seen on this page yet. Play it, or load the page again.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Belum ada video yang terlihat di halaman ini. Putar videonya atau muat ulang halaman.</translation>
    </message>
    <message>
        <source>Handed over to Kovalo.</source>
        <extracomment>After a click on a video</extracomment>
        <translation>Diserahkan ke Kovalo.</translation>
    </message>
    <message>
        <source>Handing over…</source>
        <extracomment>While Kovalo has not answered yet</extracomment>
        <translation>Menyerahkan…</translation>
    </message>
    <message>
        <source>Video</source>
        <extracomment>Kind of file</extracomment>
        <translation>Video</translation>
    </message>
    <message>
        <source>Sound</source>
        <extracomment>Kind of file</extracomment>
        <translation>Suara</translation>
    </message>
    <message>
        <source>Stream</source>
        <extracomment>Kind of media: a video that is sent in pieces</extracomment>
        <translation>Aliran</translation>
    </message>
    <message>
        <source>Choose among the links of this page…</source>
        <extracomment>Button; opens a page with a list of links</extracomment>
        <translation>Pilih di antara tautan halaman ini…</translation>
    </message>
    <message>
        <source>Download links</source>
        <extracomment>Title of the page with a list of links</extracomment>
        <translation>Unduh tautan</translation>
    </message>
    <message>
        <source>Filter by name or address</source>
        <extracomment>Hint in a search field</extracomment>
        <translation>Saring menurut nama atau alamat</translation>
    </message>
    <message>
        <source>Kind</source>
        <extracomment>Heading of a column, and name of a list to choose from</extracomment>
        <translation>Jenis</translation>
    </message>
    <message>
        <source>Every kind</source>
        <extracomment>Choice among kinds of files: no filter</extracomment>
        <translation>Semua jenis</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Heading of a column</extracomment>
        <translation>Nama</translation>
    </message>
    <message>
        <source>Server</source>
        <extracomment>Heading of a column</extracomment>
        <translation>Server</translation>
    </message>
    <message>
        <source>All</source>
        <extracomment>Button: selects all links that are shown</extracomment>
        <translation>Semua</translation>
    </message>
    <message>
        <source>None</source>
        <extracomment>Button: selects none of the links that are shown</extracomment>
        <translation>Tidak ada</translation>
    </message>
    <message>
        <source>Download ($COUNT$)</source>
        <extracomment>Button; the count of selected links</extracomment>
        <translation>Unduh ($COUNT$)</translation>
    </message>
    <message>
        <source>Handed over to Kovalo: $COUNT$</source>
        <extracomment>The count of links</extracomment>
        <translation>Diserahkan ke Kovalo: $COUNT$</translation>
    </message>
    <message>
        <source>This page has no links that can be downloaded.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Halaman ini tidak memiliki tautan yang dapat diunduh.</translation>
    </message>
    <message>
        <source>Image</source>
        <extracomment>Kind of file</extracomment>
        <translation>Gambar</translation>
    </message>
    <message>
        <source>Document</source>
        <extracomment>Kind of file</extracomment>
        <translation>Dokumen</translation>
    </message>
    <message>
        <source>Archive</source>
        <extracomment>Kind of file (zip and the like)</extracomment>
        <translation>Arsip</translation>
    </message>
    <message>
        <source>Program</source>
        <extracomment>Kind of file</extracomment>
        <translation>Program</translation>
    </message>
    <message>
        <source>Other file</source>
        <extracomment>Kind of file</extracomment>
        <translation>Berkas lain</translation>
    </message>
    <message>
        <source>Page</source>
        <extracomment>Kind of link: leads to a page, not to a file</extracomment>
        <translation>Halaman</translation>
    </message>
    <message>
        <source>The options are kept by Kovalo, which has not answered yet.</source>
        <extracomment>While the options cannot be shown</extracomment>
        <translation>Opsi disimpan oleh Kovalo, yang belum menjawab.</translation>
    </message>
    <message>
        <source>Saved</source>
        <extracomment>Shown for a moment after a change</extracomment>
        <translation>Tersimpan</translation>
    </message>
    <message>
        <source>Another program is using Kovalo&apos;s settings. Your changes hold, and are stored when it is done.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>Program lain sedang memakai pengaturan Kovalo. Perubahan Anda berlaku dan disimpan setelah selesai.</translation>
    </message>
    <message>
        <source>Kovalo&apos;s settings cannot be stored on this computer. Your changes hold until the browser ends.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>Pengaturan Kovalo tidak dapat disimpan di komputer ini. Perubahan Anda berlaku sampai peramban ditutup.</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Unduhan yang dimulai di peramban</translation>
    </message>
    <message>
        <source>Hand them over to Kovalo</source>
        <extracomment>Option, below &quot;Downloads that begin in the browser&quot;</extracomment>
        <translation>Serahkan ke Kovalo</translation>
    </message>
    <message>
        <source>Whatever cannot be handed over goes on in the browser.</source>
        <extracomment>Below that option</extracomment>
        <translation>Yang tidak dapat diserahkan berlanjut di peramban.</translation>
    </message>
    <message>
        <source>Let the browser go on when a download is declined in Kovalo</source>
        <extracomment>Option</extracomment>
        <translation>Biarkan peramban melanjutkan jika unduhan ditolak di Kovalo</translation>
    </message>
    <message>
        <source>Key that keeps a download in the browser</source>
        <extracomment>Option, a choice among keys</extracomment>
        <translation>Tombol yang membiarkan unduhan di peramban</translation>
    </message>
    <message>
        <source>What stays in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Yang tetap di peramban</translation>
    </message>
    <message>
        <source>Files smaller than</source>
        <extracomment>Option; a size follows</extracomment>
        <translation>Berkas lebih kecil dari</translation>
    </message>
    <message>
        <source>Unit</source>
        <extracomment>Name of the choice among units of size</extracomment>
        <translation>Satuan</translation>
    </message>
    <message>
        <source>Files whose names end in</source>
        <extracomment>Option; a list of endings such as zip follows</extracomment>
        <translation>Berkas yang namanya berakhiran</translation>
    </message>
    <message>
        <source>For example: jpg, png, tmp*</source>
        <extracomment>Below that option</extracomment>
        <translation>Misalnya: jpg, png, tmp*</translation>
    </message>
    <message>
        <source>Files from these servers</source>
        <extracomment>Option; a list of servers follows</extracomment>
        <translation>Berkas dari server ini</translation>
    </message>
    <message>
        <source>Servers</source>
        <extracomment>Name of a list</extracomment>
        <translation>Server</translation>
    </message>
    <message>
        <source>One a line. A server covers those below it: example.com also means www.example.com.</source>
        <extracomment>Below that list</extracomment>
        <translation>Satu per baris. Server mencakup yang di bawahnya: example.com juga berarti www.example.com.</translation>
    </message>
    <message>
        <source>this would match everything</source>
        <extracomment>Why an entry of a list is not taken; follows the entry and a colon</extracomment>
        <translation>ini akan cocok dengan semuanya</translation>
    </message>
    <message>
        <source>only what stands after the last dot is compared</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>hanya yang sesudah titik terakhir dibandingkan</translation>
    </message>
    <message>
        <source>no name of a file ends like this</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>tidak ada nama berkas yang berakhiran begini</translation>
    </message>
    <message>
        <source>no server is called this</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>tidak ada server bernama ini</translation>
    </message>
    <message>
        <source>addresses with colons cannot be compared</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>alamat dengan titik dua tidak dapat dibandingkan</translation>
    </message>
    <message>
        <source>What you are told</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Yang diberitahukan kepada Anda</translation>
    </message>
    <message>
        <source>Show on the button what became of a download</source>
        <extracomment>Option</extracomment>
        <translation>Tunjukkan pada tombol nasib sebuah unduhan</translation>
    </message>
    <message>
        <source>Notify me when a download could not be handed over</source>
        <extracomment>Option</extracomment>
        <translation>Beri tahu saya jika unduhan tidak dapat diserahkan</translation>
    </message>
    <message>
        <source>Notify me when a download was handed over</source>
        <extracomment>Option</extracomment>
        <translation>Beri tahu saya jika unduhan telah diserahkan</translation>
    </message>
    <message>
        <source>Context menu</source>
        <extracomment>Heading of a group of options: entries of the menu of the right mouse button</extracomment>
        <translation>Menu konteks</translation>
    </message>
    <message>
        <source>Download a link</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Unduh tautan</translation>
    </message>
    <message>
        <source>Download the selected links</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Unduh tautan terpilih</translation>
    </message>
    <message>
        <source>Download all links of a page</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Unduh semua tautan halaman</translation>
    </message>
    <message>
        <source>Download a video</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Unduh video</translation>
    </message>
    <message>
        <source>Videos</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Video</translation>
    </message>
    <message>
        <source>Look for videos and sound on all pages</source>
        <extracomment>Option</extracomment>
        <translation>Cari video dan suara di semua halaman</translation>
    </message>
    <message>
        <source>Otherwise only on pages where you open this extension or use its menu.</source>
        <extracomment>Below that option</extracomment>
        <translation>Jika tidak, hanya di halaman tempat Anda membuka ekstensi ini atau memakai menunya.</translation>
    </message>
    <message>
        <source>Connected to the Kovalo host $VERSION$.</source>
        <extracomment>State; the host is the program between browser and application</extracomment>
        <translation>Tersambung ke host Kovalo $VERSION$.</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <extracomment>State</extracomment>
        <translation>Menyambung…</translation>
    </message>
    <message>
        <source>Kovalo for your browser</source>
        <extracomment>Title of the page that explains and checks the extension</extracomment>
        <translation>Kovalo untuk peramban Anda</translation>
    </message>
    <message>
        <source>What it does</source>
        <extracomment>Heading</extracomment>
        <translation>Yang dilakukannya</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser are handed over to Kovalo. What Kovalo does not take goes on in the browser; nothing is lost.</source>
        <extracomment>Explanation</extracomment>
        <translation>Unduhan yang dimulai di peramban diserahkan ke Kovalo. Yang tidak diambil Kovalo berlanjut di peramban; tidak ada yang hilang.</translation>
    </message>
    <message>
        <source>Right-click a link, a selection or a video to hand it over yourself.</source>
        <extracomment>Explanation</extracomment>
        <translation>Klik kanan tautan, pilihan, atau video untuk menyerahkannya sendiri.</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the pin beside Kovalo.</source>
        <extracomment>Explanation for Chromium and its kin</extracomment>
        <translation>Agar tombol tetap terlihat: klik potongan puzzle di bilah alat, lalu pin di samping Kovalo.</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the wheel beside Kovalo, then “Pin to Toolbar”.</source>
        <extracomment>Explanation for Firefox; the words in quotes are Firefox&apos;s own</extracomment>
        <translation>Agar tombol tetap terlihat: klik potongan puzzle di bilah alat, lalu roda di samping Kovalo, lalu “Sematkan ke Bilah Alat”.</translation>
    </message>
    <message>
        <source>Is everything in place?</source>
        <extracomment>Heading</extracomment>
        <translation>Apakah semuanya siap?</translation>
    </message>
    <message>
        <source>Check again</source>
        <extracomment>Button</extracomment>
        <translation>Periksa lagi</translation>
    </message>
    <message>
        <source>Try a download</source>
        <extracomment>Button: makes a small test file</extracomment>
        <translation>Coba unduhan</translation>
    </message>
    <message>
        <source>Everything works.</source>
        <extracomment>Result of a check</extracomment>
        <translation>Semuanya berfungsi.</translation>
    </message>
    <message>
        <source>Nothing is known to be broken. Try a download to be sure.</source>
        <extracomment>Result of a check</extracomment>
        <translation>Tidak diketahui ada kerusakan. Coba unduhan untuk memastikan.</translation>
    </message>
    <message>
        <source>This link of the chain is broken: $STEP$</source>
        <extracomment>Result of a check; one of Browser, Access to pages, Kovalo host, Kovalo, Test download</extracomment>
        <translation>Mata rantai ini putus: $STEP$</translation>
    </message>
    <message>
        <source>In order</source>
        <extracomment>Name of a check mark</extracomment>
        <translation>Baik</translation>
    </message>
    <message>
        <source>Broken</source>
        <extracomment>Name of a cross</extracomment>
        <translation>Putus</translation>
    </message>
    <message>
        <source>Not checked</source>
        <extracomment>Name of a mark</extracomment>
        <translation>Belum diperiksa</translation>
    </message>
    <message>
        <source>Browser</source>
        <extracomment>A link of the chain</extracomment>
        <translation>Peramban</translation>
    </message>
    <message>
        <source>Access to pages</source>
        <extracomment>A link of the chain</extracomment>
        <translation>Akses ke halaman</translation>
    </message>
    <message>
        <source>Kovalo host</source>
        <extracomment>A link of the chain: the program between browser and application</extracomment>
        <translation>Host Kovalo</translation>
    </message>
    <message>
        <source>Kovalo</source>
        <extracomment>The product&apos;s name; not translated
----------
A link of the chain: the application</extracomment>
        <translation>Kovalo</translation>
    </message>
    <message>
        <source>Test download</source>
        <extracomment>A link of the chain</extracomment>
        <translation>Unduhan percobaan</translation>
    </message>
    <message>
        <source>The extension may see which downloads begin on pages.</source>
        <extracomment>State</extracomment>
        <translation>Ekstensi boleh melihat unduhan mana yang dimulai di halaman.</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so no download can be caught.</source>
        <extracomment>State</extracomment>
        <translation>Peramban menahan akses ke halaman, jadi tidak ada unduhan yang dapat ditangkap.</translation>
    </message>
    <message>
        <source>Allow access</source>
        <extracomment>Button</extracomment>
        <translation>Izinkan akses</translation>
    </message>
    <message>
        <source>Kovalo answered.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo menjawab.</translation>
    </message>
    <message>
        <source>Kovalo is started when there is something to download.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo dijalankan jika ada yang diunduh.</translation>
    </message>
    <message>
        <source>Not tried yet.</source>
        <extracomment>State</extracomment>
        <translation>Belum dicoba.</translation>
    </message>
    <message>
        <source>Nothing happens?</source>
        <extracomment>Heading</extracomment>
        <translation>Tidak terjadi apa-apa?</translation>
    </message>
    <message>
        <source>Run this command in a terminal. It looks at every link of the chain and says how to mend it:</source>
        <extracomment>Explanation; a command follows</extracomment>
        <translation>Jalankan perintah ini di terminal. Perintah ini memeriksa setiap mata rantai dan mengatakan cara memperbaikinya:</translation>
    </message>
    <message>
        <source>The Kovalo host is not installed, or not registered for this browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Host Kovalo tidak terpasang, atau tidak terdaftar untuk peramban ini.</translation>
    </message>
    <message>
        <source>This extension is not allowed to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Ekstensi ini tidak diizinkan memakai host Kovalo.</translation>
    </message>
    <message>
        <source>The Kovalo host stopped. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>Host Kovalo berhenti. $REASON$</translation>
    </message>
    <message>
        <source>The Kovalo host was started but does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>Host Kovalo dijalankan tetapi tidak menjawab.</translation>
    </message>
    <message>
        <source>Kovalo is not installed beside its host, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo tidak terpasang di samping hostnya, jadi unduhan tetap di peramban.</translation>
    </message>
    <message>
        <source>Kovalo does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo tidak menjawab.</translation>
    </message>
    <message>
        <source>Kovalo did not take the download: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>Kovalo tidak mengambil unduhan: $REASON$</translation>
    </message>
    <message>
        <source>Kovalo did not say whether it took the download.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo tidak mengatakan apakah ia mengambil unduhan.</translation>
    </message>
    <message>
        <source>Kovalo did not start, or ended before it answered.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo tidak berjalan, atau berakhir sebelum menjawab.</translation>
    </message>
    <message>
        <source>Kovalo cannot download from this address.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo tidak dapat mengunduh dari alamat ini.</translation>
    </message>
    <message>
        <source>There is nothing to download here.</source>
        <extracomment>Problem</extracomment>
        <translation>Tidak ada yang dapat diunduh di sini.</translation>
    </message>
    <message>
        <source>No video was seen here. Play it, or load the page again, and try once more.</source>
        <extracomment>Problem</extracomment>
        <translation>Tidak ada video yang terlihat di sini. Putar videonya atau muat ulang halaman, lalu coba sekali lagi.</translation>
    </message>
    <message>
        <source>The options were not stored: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>Opsi tidak tersimpan: $REASON$</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Peramban menahan akses ke halaman, jadi unduhan tetap di peramban.</translation>
    </message>
    <message>
        <source>$NAME$ → Kovalo</source>
        <extracomment>Notification; the name of a file</extracomment>
        <translation>$NAME$ → Kovalo</translation>
    </message>
    <message>
        <source>The browser lets the extension see some sites only. Downloads from others stay in the browser.</source>
        <extracomment>State</extracomment>
        <translation>Peramban hanya mengizinkan ekstensi melihat beberapa situs. Unduhan dari situs lain tetap di peramban.</translation>
    </message>
    <message>
        <source>Does the terminal not know this command? Then install Kovalo first. If you unpacked it from an archive, the command is in its folder “bin”.</source>
        <extracomment>Below a command on the page on problems</extracomment>
        <translation>Terminal tidak mengenal perintah ini? Pasang Kovalo terlebih dahulu. Jika Anda mengekstraknya dari arsip, perintahnya ada di folder “bin”.</translation>
    </message>
    <message>
        <source>To keep one download in the browser, click the Kovalo button in the toolbar, then “Keep the next download in the browser”.</source>
        <extracomment>Explanation; the words in quotes are the text of a button, see there</extracomment>
        <translation>Untuk membiarkan satu unduhan di peramban, klik tombol Kovalo di bilah alat, lalu “Biarkan unduhan berikutnya di peramban”.</translation>
    </message>
    <message>
        <source>To see the videos of a page, click the Kovalo button.</source>
        <extracomment>Explanation</extracomment>
        <translation>Untuk melihat video sebuah halaman, klik tombol Kovalo.</translation>
    </message>
    <message>
        <source>Alt</source>
        <extracomment>Name of a key</extracomment>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <extracomment>Name of a key</extracomment>
        <translation>Ctrl</translation>
    </message>
    <message>
        <source>Shift</source>
        <extracomment>Name of a key</extracomment>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Files only</source>
        <extracomment>Choice among kinds of files: all but links to pages</extracomment>
        <translation>Hanya berkas</translation>
    </message>
    <message>
        <source>This list is no longer known. Open it again from the page with the links.</source>
        <extracomment>In place of a list of links, when the browser was started anew</extracomment>
        <translation>Daftar ini tidak dikenal lagi. Buka lagi dari halaman yang memuat tautannya.</translation>
    </message>
    <message>
        <source>No link matches the filter.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Tidak ada tautan yang cocok dengan saringan.</translation>
    </message>
    <message>
        <source>Hold it while you click a link. If your desktop uses that key with the mouse itself, choose another one.</source>
        <extracomment>Below that option</extracomment>
        <translation>Tahan saat mengeklik tautan. Jika desktop Anda sudah memakai tombol itu dengan tetikus, pilih tombol lain.</translation>
    </message>
    <message>
        <source>Whoever administers this computer forbids the browser to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Pengelola komputer ini melarang peramban memakai host Kovalo.</translation>
    </message>
    <message>
        <source>The Kovalo host could not be started, or ended at once. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>Host Kovalo tidak dapat dijalankan, atau langsung berakhir. $REASON$</translation>
    </message>
    <message>
        <source>Another program is in the place of the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Ada program lain di tempat host Kovalo.</translation>
    </message>
    <message>
        <source>There is no option $NAME$.</source>
        <extracomment>Error of the extension itself; never seen by users</extracomment>
        <translation>Tidak ada opsi $NAME$.</translation>
    </message>
    <message>
        <source>The next download stays in the browser.</source>
        <extracomment>State, below the switch for catching downloads, while the button for that is pressed</extracomment>
        <translation>Unduhan berikutnya tetap di peramban.</translation>
    </message>
    <message>
        <source>Downloads from $HOST$ stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Unduhan dari $HOST$ tetap di peramban.</translation>
    </message>
    <message>
        <source>Kovalo works: this file came from the browser&apos;s extension.</source>
        <extracomment>The text in a test file</extracomment>
        <translation>Kovalo berfungsi: berkas ini berasal dari ekstensi peramban.</translation>
    </message>
    <message>
        <source>Kovalo took the test file kovalo-test.txt. Look for it in your downloads folder.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo menerima berkas percobaan kovalo-test.txt. Carilah di folder unduhan Anda.</translation>
    </message>
</context>
<context>
    <name>KovNotifications</name>
    <message>
        <source>Download added</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>Unduhan ditambahkan</translation>
    </message>
    <message>
        <source>Downloads added: %1</source>
        <extracomment>Title of a notification; %1 is their number</extracomment>
        <translation>Unduhan ditambahkan: %1</translation>
    </message>
    <message>
        <source>Download finished</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>Unduhan selesai</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button of a notification: opens the file</extracomment>
        <translation>Buka</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <extracomment>Button of a notification: opens the folder in which the file is</extracomment>
        <translation>Tampilkan di folder</translation>
    </message>
    <message>
        <source>Download failed</source>
        <extracomment>Title of a notification; the file&apos;s name and the reason follow</extracomment>
        <translation>Unduhan gagal</translation>
    </message>
    <message>
        <source>Retry</source>
        <extracomment>Button of a notification: tries the download again</extracomment>
        <translation>Coba lagi</translation>
    </message>
</context>
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <comment>Translate this string to the string &apos;LTR&apos; in left-to-right languages or to &apos;RTL&apos; in right-to-left languages (such as Hebrew and Arabic) to get proper UI layout.</comment>
        <translation>LTR</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Download with %1</source>
        <extracomment>Menu entry for one link; %1 is the product&apos;s name</extracomment>
        <translation>Unduh dengan %1</translation>
    </message>
    <message>
        <source>Download all with %1</source>
        <extracomment>Menu entry for all links of a page; %1 is the product&apos;s name</extracomment>
        <translation>Unduh semua dengan %1</translation>
    </message>
    <message>
        <source>Download selected with %1</source>
        <extracomment>Menu entry for the links within the selected part of a page; %1 is the product&apos;s name</extracomment>
        <translation>Unduh yang dipilih dengan %1</translation>
    </message>
    <message>
        <source>Download video with %1</source>
        <extracomment>Menu entry for a video; %1 is the product&apos;s name</extracomment>
        <translation>Unduh video dengan %1</translation>
    </message>
</context>
<context>
    <name>VhIpcIncomingDownloadsClient</name>
    <message>
        <source>Connection failure</source>
        <extracomment>The link to the download manager broke or could not be made</extracomment>
        <translation>Koneksi gagal</translation>
    </message>
</context>
</TS>
