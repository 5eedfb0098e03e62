<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT" sourcelanguage="en_US">
<context>
    <name>Extension</name>
    <message>
        <source>Hands downloads over to the Kovalo download manager.</source>
        <extracomment>Shown in the browser&apos;s list of extensions</extracomment>
        <translation>Affida i download al gestore di download Kovalo.</translation>
    </message>
    <message>
        <source>Options</source>
        <extracomment>Button and link
----------
Title of a page</extracomment>
        <translation>Opzioni</translation>
    </message>
    <message>
        <source>Help and problems</source>
        <extracomment>Button and link to the page that explains the extension and checks it</extracomment>
        <translation>Aiuto e problemi</translation>
    </message>
    <message>
        <source>Why?</source>
        <extracomment>Button beside a text on a problem; opens the page that finds the cause</extracomment>
        <translation>Perché?</translation>
    </message>
    <message>
        <source>Try again</source>
        <extracomment>Button</extracomment>
        <translation>Riprova</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <extracomment>Button that takes away a text on a problem</extracomment>
        <translation>Nascondi</translation>
    </message>
    <message>
        <source>Copy</source>
        <extracomment>Button that copies a command</extracomment>
        <translation>Copia</translation>
    </message>
    <message>
        <source>Copied</source>
        <extracomment>The same button for a moment afterwards</extracomment>
        <translation>Copiato</translation>
    </message>
    <message>
        <source>Downloads go to Kovalo.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>I download vanno a Kovalo.</translation>
    </message>
    <message>
        <source>Downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>I download restano nel browser.</translation>
    </message>
    <message>
        <source>Kovalo is not connected, so downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Kovalo non è connesso, quindi i download restano nel browser.</translation>
    </message>
    <message>
        <source>Catch downloads</source>
        <extracomment>Switch: downloads that begin in the browser are handed over
----------
A link of the chain: an option that may be off</extracomment>
        <translation>Cattura i download</translation>
    </message>
    <message>
        <source>Not on $HOST$</source>
        <extracomment>Switch: downloads from this server stay in the browser</extracomment>
        <translation>Non su $HOST$</translation>
    </message>
    <message>
        <source>Keep the next download in the browser</source>
        <extracomment>Name of a keyboard shortcut, in the browser&apos;s list
----------
Button that stays pressed until the next download</extracomment>
        <translation>Lascia il prossimo download nel browser</translation>
    </message>
    <message>
        <source>Or hold $KEY$ while you click a link.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>Oppure tieni premuto $KEY$ mentre fai clic su un link.</translation>
    </message>
    <message>
        <source>Shortcut for the next one: $KEYS$.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>Scorciatoia per il prossimo: $KEYS$.</translation>
    </message>
    <message>
        <source>No key</source>
        <extracomment>Choice among keys</extracomment>
        <translation>Nessun tasto</translation>
    </message>
    <message>
        <source>Last downloads</source>
        <extracomment>Heading of a list</extracomment>
        <translation>Ultimi download</translation>
    </message>
    <message>
        <source>No download has been caught yet.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Non è stato ancora catturato alcun download.</translation>
    </message>
    <message>
        <source>Download</source>
        <extracomment>In place of a file&apos;s name that is not known</extracomment>
        <translation>Download</translation>
    </message>
    <message>
        <source>Handed over to Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Affidato a Kovalo</translation>
    </message>
    <message>
        <source>Declined in Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Rifiutato in Kovalo</translation>
    </message>
    <message>
        <source>Kept in the browser</source>
        <extracomment>State of a download that was not handed over because the user or an option said so</extracomment>
        <translation>Rimasto nel browser</translation>
    </message>
    <message>
        <source>Stays in the browser: $REASON$</source>
        <extracomment>State of a download that could not be handed over; the reason is a sentence</extracomment>
        <translation>Resta nel browser: $REASON$</translation>
    </message>
    <message>
        <source>Saved twice: by the browser and by Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Salvato due volte: dal browser e da Kovalo</translation>
    </message>
    <message>
        <source>There are two copies of $NAME$: the browser had finished when Kovalo took it.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Ci sono due copie di $NAME$: il browser aveva finito quando Kovalo lo ha preso.</translation>
    </message>
    <message>
        <source>The browser goes on with $NAME$. Kovalo was asked to take it and has not answered, so it may have it, too.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Il browser continua con $NAME$. Kovalo è stato interpellato e non ha risposto, quindi forse lo ha anche lui.</translation>
    </message>
    <message>
        <source>The download of $NAME$ broke off. Begin it again on its page.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Il download di $NAME$ si è interrotto. Riavvialo dalla sua pagina.</translation>
    </message>
    <message>
        <source>In the browser, perhaps in Kovalo, too</source>
        <extracomment>State of a download</extracomment>
        <translation>Nel browser, forse anche in Kovalo</translation>
    </message>
    <message>
        <source>Broke off; begin it again on its page</source>
        <extracomment>State of a download</extracomment>
        <translation>Interrotto; riavvialo dalla sua pagina</translation>
    </message>
    <message>
        <source>On this page</source>
        <extracomment>Heading of a list of videos and sounds</extracomment>
        <translation>In questa pagina</translation>
    </message>
    <message>
        <source>No video has been seen on this page yet. Play it, or load the page again.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>In questa pagina non è stato ancora visto alcun video. Riproducilo o ricarica la pagina.</translation>
    </message>
    <message>
        <source>Handed over to Kovalo.</source>
        <extracomment>After a click on a video</extracomment>
        <translation>Affidato a Kovalo.</translation>
    </message>
    <message>
        <source>Handing over…</source>
        <extracomment>While Kovalo has not answered yet</extracomment>
        <translation>Consegna in corso…</translation>
    </message>
    <message>
        <source>Video</source>
        <extracomment>Kind of file</extracomment>
        <translation>Video</translation>
    </message>
    <message>
        <source>Sound</source>
        <extracomment>Kind of file</extracomment>
        <translation>Audio</translation>
    </message>
    <message>
        <source>Stream</source>
        <extracomment>Kind of media: a video that is sent in pieces</extracomment>
        <translation>Flusso</translation>
    </message>
    <message>
        <source>Choose among the links of this page…</source>
        <extracomment>Button; opens a page with a list of links</extracomment>
        <translation>Scegli tra i link di questa pagina…</translation>
    </message>
    <message>
        <source>Download links</source>
        <extracomment>Title of the page with a list of links</extracomment>
        <translation>Scarica link</translation>
    </message>
    <message>
        <source>Filter by name or address</source>
        <extracomment>Hint in a search field</extracomment>
        <translation>Filtra per nome o indirizzo</translation>
    </message>
    <message>
        <source>Kind</source>
        <extracomment>Heading of a column, and name of a list to choose from</extracomment>
        <translation>Tipo</translation>
    </message>
    <message>
        <source>Every kind</source>
        <extracomment>Choice among kinds of files: no filter</extracomment>
        <translation>Tutti i tipi</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Heading of a column</extracomment>
        <translation>Nome</translation>
    </message>
    <message>
        <source>Server</source>
        <extracomment>Heading of a column</extracomment>
        <translation>Server</translation>
    </message>
    <message>
        <source>All</source>
        <extracomment>Button: selects all links that are shown</extracomment>
        <translation>Tutti</translation>
    </message>
    <message>
        <source>None</source>
        <extracomment>Button: selects none of the links that are shown</extracomment>
        <translation>Nessuno</translation>
    </message>
    <message>
        <source>Download ($COUNT$)</source>
        <extracomment>Button; the count of selected links</extracomment>
        <translation>Scarica ($COUNT$)</translation>
    </message>
    <message>
        <source>Handed over to Kovalo: $COUNT$</source>
        <extracomment>The count of links</extracomment>
        <translation>Affidati a Kovalo: $COUNT$</translation>
    </message>
    <message>
        <source>This page has no links that can be downloaded.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Questa pagina non ha link scaricabili.</translation>
    </message>
    <message>
        <source>Image</source>
        <extracomment>Kind of file</extracomment>
        <translation>Immagine</translation>
    </message>
    <message>
        <source>Document</source>
        <extracomment>Kind of file</extracomment>
        <translation>Documento</translation>
    </message>
    <message>
        <source>Archive</source>
        <extracomment>Kind of file (zip and the like)</extracomment>
        <translation>Archivio</translation>
    </message>
    <message>
        <source>Program</source>
        <extracomment>Kind of file</extracomment>
        <translation>Programma</translation>
    </message>
    <message>
        <source>Other file</source>
        <extracomment>Kind of file</extracomment>
        <translation>Altro file</translation>
    </message>
    <message>
        <source>Page</source>
        <extracomment>Kind of link: leads to a page, not to a file</extracomment>
        <translation>Pagina</translation>
    </message>
    <message>
        <source>The options are kept by Kovalo, which has not answered yet.</source>
        <extracomment>While the options cannot be shown</extracomment>
        <translation>Le opzioni sono conservate da Kovalo, che non ha ancora risposto.</translation>
    </message>
    <message>
        <source>Saved</source>
        <extracomment>Shown for a moment after a change</extracomment>
        <translation>Salvato</translation>
    </message>
    <message>
        <source>Another program is using Kovalo&apos;s settings. Your changes hold, and are stored when it is done.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>Un altro programma sta usando le impostazioni di Kovalo. Le tue modifiche valgono e saranno salvate quando avrà finito.</translation>
    </message>
    <message>
        <source>Kovalo&apos;s settings cannot be stored on this computer. Your changes hold until the browser ends.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>Le impostazioni di Kovalo non possono essere salvate su questo computer. Le tue modifiche valgono fino alla chiusura del browser.</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Download che iniziano nel browser</translation>
    </message>
    <message>
        <source>Hand them over to Kovalo</source>
        <extracomment>Option, below &quot;Downloads that begin in the browser&quot;</extracomment>
        <translation>Affidali a Kovalo</translation>
    </message>
    <message>
        <source>Whatever cannot be handed over goes on in the browser.</source>
        <extracomment>Below that option</extracomment>
        <translation>Ciò che non può essere affidato continua nel browser.</translation>
    </message>
    <message>
        <source>Let the browser go on when a download is declined in Kovalo</source>
        <extracomment>Option</extracomment>
        <translation>Lascia che il browser continui quando un download viene rifiutato in Kovalo</translation>
    </message>
    <message>
        <source>Key that keeps a download in the browser</source>
        <extracomment>Option, a choice among keys</extracomment>
        <translation>Tasto che lascia un download nel browser</translation>
    </message>
    <message>
        <source>What stays in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Che cosa resta nel browser</translation>
    </message>
    <message>
        <source>Files smaller than</source>
        <extracomment>Option; a size follows</extracomment>
        <translation>File più piccoli di</translation>
    </message>
    <message>
        <source>Unit</source>
        <extracomment>Name of the choice among units of size</extracomment>
        <translation>Unità</translation>
    </message>
    <message>
        <source>Files whose names end in</source>
        <extracomment>Option; a list of endings such as zip follows</extracomment>
        <translation>File il cui nome finisce con</translation>
    </message>
    <message>
        <source>For example: jpg, png, tmp*</source>
        <extracomment>Below that option</extracomment>
        <translation>Per esempio: jpg, png, tmp*</translation>
    </message>
    <message>
        <source>Files from these servers</source>
        <extracomment>Option; a list of servers follows</extracomment>
        <translation>File da questi server</translation>
    </message>
    <message>
        <source>Servers</source>
        <extracomment>Name of a list</extracomment>
        <translation>Server</translation>
    </message>
    <message>
        <source>One a line. A server covers those below it: example.com also means www.example.com.</source>
        <extracomment>Below that list</extracomment>
        <translation>Uno per riga. Un server comprende quelli al di sotto: example.com vale anche per www.example.com.</translation>
    </message>
    <message>
        <source>this would match everything</source>
        <extracomment>Why an entry of a list is not taken; follows the entry and a colon</extracomment>
        <translation>corrisponderebbe a tutto</translation>
    </message>
    <message>
        <source>only what stands after the last dot is compared</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>si confronta solo ciò che segue l’ultimo punto</translation>
    </message>
    <message>
        <source>no name of a file ends like this</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>nessun nome di file finisce così</translation>
    </message>
    <message>
        <source>no server is called this</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>nessun server si chiama così</translation>
    </message>
    <message>
        <source>addresses with colons cannot be compared</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>gli indirizzi con i due punti non possono essere confrontati</translation>
    </message>
    <message>
        <source>What you are told</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Che cosa ti viene segnalato</translation>
    </message>
    <message>
        <source>Show on the button what became of a download</source>
        <extracomment>Option</extracomment>
        <translation>Mostra sul pulsante l’esito di un download</translation>
    </message>
    <message>
        <source>Notify me when a download could not be handed over</source>
        <extracomment>Option</extracomment>
        <translation>Avvisami quando un download non ha potuto essere affidato</translation>
    </message>
    <message>
        <source>Notify me when a download was handed over</source>
        <extracomment>Option</extracomment>
        <translation>Avvisami quando un download è stato affidato</translation>
    </message>
    <message>
        <source>Context menu</source>
        <extracomment>Heading of a group of options: entries of the menu of the right mouse button</extracomment>
        <translation>Menu contestuale</translation>
    </message>
    <message>
        <source>Download a link</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Scarica un link</translation>
    </message>
    <message>
        <source>Download the selected links</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Scarica i link selezionati</translation>
    </message>
    <message>
        <source>Download all links of a page</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Scarica tutti i link di una pagina</translation>
    </message>
    <message>
        <source>Download a video</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Scarica un video</translation>
    </message>
    <message>
        <source>Videos</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Video</translation>
    </message>
    <message>
        <source>Look for videos and sound on all pages</source>
        <extracomment>Option</extracomment>
        <translation>Cerca video e audio in tutte le pagine</translation>
    </message>
    <message>
        <source>Otherwise only on pages where you open this extension or use its menu.</source>
        <extracomment>Below that option</extracomment>
        <translation>Altrimenti solo nelle pagine in cui apri questa estensione o usi il suo menu.</translation>
    </message>
    <message>
        <source>Connected to the Kovalo host $VERSION$.</source>
        <extracomment>State; the host is the program between browser and application</extracomment>
        <translation>Connesso all’host di Kovalo $VERSION$.</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <extracomment>State</extracomment>
        <translation>Connessione…</translation>
    </message>
    <message>
        <source>Kovalo for your browser</source>
        <extracomment>Title of the page that explains and checks the extension</extracomment>
        <translation>Kovalo per il tuo browser</translation>
    </message>
    <message>
        <source>What it does</source>
        <extracomment>Heading</extracomment>
        <translation>Che cosa fa</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser are handed over to Kovalo. What Kovalo does not take goes on in the browser; nothing is lost.</source>
        <extracomment>Explanation</extracomment>
        <translation>I download che iniziano nel browser vengono affidati a Kovalo. Ciò che Kovalo non prende continua nel browser; nulla va perso.</translation>
    </message>
    <message>
        <source>Right-click a link, a selection or a video to hand it over yourself.</source>
        <extracomment>Explanation</extracomment>
        <translation>Fai clic destro su un link, una selezione o un video per affidarlo tu stesso.</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the pin beside Kovalo.</source>
        <extracomment>Explanation for Chromium and its kin</extracomment>
        <translation>Per tenere in vista il pulsante: fai clic sul pezzo di puzzle nella barra degli strumenti, poi sulla puntina accanto a Kovalo.</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the wheel beside Kovalo, then “Pin to Toolbar”.</source>
        <extracomment>Explanation for Firefox; the words in quotes are Firefox&apos;s own</extracomment>
        <translation>Per tenere in vista il pulsante: fai clic sul pezzo di puzzle nella barra degli strumenti, poi sulla rotella accanto a Kovalo, poi su “Aggiungi alla barra degli strumenti”.</translation>
    </message>
    <message>
        <source>Is everything in place?</source>
        <extracomment>Heading</extracomment>
        <translation>È tutto a posto?</translation>
    </message>
    <message>
        <source>Check again</source>
        <extracomment>Button</extracomment>
        <translation>Controlla di nuovo</translation>
    </message>
    <message>
        <source>Try a download</source>
        <extracomment>Button: makes a small test file</extracomment>
        <translation>Prova un download</translation>
    </message>
    <message>
        <source>Everything works.</source>
        <extracomment>Result of a check</extracomment>
        <translation>Tutto funziona.</translation>
    </message>
    <message>
        <source>Nothing is known to be broken. Try a download to be sure.</source>
        <extracomment>Result of a check</extracomment>
        <translation>Non si conosce alcun guasto. Prova un download per esserne certo.</translation>
    </message>
    <message>
        <source>This link of the chain is broken: $STEP$</source>
        <extracomment>Result of a check; one of Browser, Access to pages, Kovalo host, Kovalo, Test download</extracomment>
        <translation>Questo anello della catena è rotto: $STEP$</translation>
    </message>
    <message>
        <source>In order</source>
        <extracomment>Name of a check mark</extracomment>
        <translation>In ordine</translation>
    </message>
    <message>
        <source>Broken</source>
        <extracomment>Name of a cross</extracomment>
        <translation>Rotto</translation>
    </message>
    <message>
        <source>Not checked</source>
        <extracomment>Name of a mark</extracomment>
        <translation>Non controllato</translation>
    </message>
    <message>
        <source>Browser</source>
        <extracomment>A link of the chain</extracomment>
        <translation>Browser</translation>
    </message>
    <message>
        <source>Access to pages</source>
        <extracomment>A link of the chain</extracomment>
        <translation>Accesso alle pagine</translation>
    </message>
    <message>
        <source>Kovalo host</source>
        <extracomment>A link of the chain: the program between browser and application</extracomment>
        <translation>Host di Kovalo</translation>
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
        <translation>Download di prova</translation>
    </message>
    <message>
        <source>The extension may see which downloads begin on pages.</source>
        <extracomment>State</extracomment>
        <translation>L’estensione può vedere quali download iniziano nelle pagine.</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so no download can be caught.</source>
        <extracomment>State</extracomment>
        <translation>Il browser nega l’accesso alle pagine, quindi nessun download può essere catturato.</translation>
    </message>
    <message>
        <source>Allow access</source>
        <extracomment>Button</extracomment>
        <translation>Consenti l’accesso</translation>
    </message>
    <message>
        <source>Kovalo answered.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo ha risposto.</translation>
    </message>
    <message>
        <source>Kovalo is started when there is something to download.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo viene avviato quando c’è qualcosa da scaricare.</translation>
    </message>
    <message>
        <source>Not tried yet.</source>
        <extracomment>State</extracomment>
        <translation>Non ancora provato.</translation>
    </message>
    <message>
        <source>Nothing happens?</source>
        <extracomment>Heading</extracomment>
        <translation>Non succede nulla?</translation>
    </message>
    <message>
        <source>Run this command in a terminal. It looks at every link of the chain and says how to mend it:</source>
        <extracomment>Explanation; a command follows</extracomment>
        <translation>Esegui questo comando in un terminale. Esamina ogni anello della catena e dice come ripararlo:</translation>
    </message>
    <message>
        <source>The Kovalo host is not installed, or not registered for this browser.</source>
        <extracomment>Problem</extracomment>
        <translation>L’host di Kovalo non è installato o non è registrato per questo browser.</translation>
    </message>
    <message>
        <source>This extension is not allowed to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Questa estensione non è autorizzata a usare l’host di Kovalo.</translation>
    </message>
    <message>
        <source>The Kovalo host stopped. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>L’host di Kovalo si è fermato. $REASON$</translation>
    </message>
    <message>
        <source>The Kovalo host was started but does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>L’host di Kovalo è stato avviato ma non risponde.</translation>
    </message>
    <message>
        <source>Kovalo is not installed beside its host, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo non è installato accanto al suo host, quindi i download restano nel browser.</translation>
    </message>
    <message>
        <source>Kovalo does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo non risponde.</translation>
    </message>
    <message>
        <source>Kovalo did not take the download: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>Kovalo non ha preso il download: $REASON$</translation>
    </message>
    <message>
        <source>Kovalo did not say whether it took the download.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo non ha detto se ha preso il download.</translation>
    </message>
    <message>
        <source>Kovalo did not start, or ended before it answered.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo non si è avviato o è terminato prima di rispondere.</translation>
    </message>
    <message>
        <source>Kovalo cannot download from this address.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo non può scaricare da questo indirizzo.</translation>
    </message>
    <message>
        <source>There is nothing to download here.</source>
        <extracomment>Problem</extracomment>
        <translation>Qui non c’è nulla da scaricare.</translation>
    </message>
    <message>
        <source>No video was seen here. Play it, or load the page again, and try once more.</source>
        <extracomment>Problem</extracomment>
        <translation>Qui non è stato visto alcun video. Riproducilo o ricarica la pagina e riprova.</translation>
    </message>
    <message>
        <source>The options were not stored: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>Le opzioni non sono state salvate: $REASON$</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Il browser nega l’accesso alle pagine, quindi i download restano nel browser.</translation>
    </message>
    <message>
        <source>$NAME$ → Kovalo</source>
        <extracomment>Notification; the name of a file</extracomment>
        <translation>$NAME$ → Kovalo</translation>
    </message>
    <message>
        <source>The browser lets the extension see some sites only. Downloads from others stay in the browser.</source>
        <extracomment>State</extracomment>
        <translation>Il browser lascia vedere all’estensione solo alcuni siti. I download dagli altri restano nel browser.</translation>
    </message>
    <message>
        <source>Does the terminal not know this command? Then install Kovalo first. If you unpacked it from an archive, the command is in its folder “bin”.</source>
        <extracomment>Below a command on the page on problems</extracomment>
        <translation>Il terminale non conosce questo comando? Allora installa prima Kovalo. Se lo hai estratto da un archivio, il comando è nella sua cartella “bin”.</translation>
    </message>
    <message>
        <source>To keep one download in the browser, click the Kovalo button in the toolbar, then “Keep the next download in the browser”.</source>
        <extracomment>Explanation; the words in quotes are the text of a button, see there</extracomment>
        <translation>Per lasciare un download nel browser, fai clic sul pulsante Kovalo nella barra degli strumenti, poi su “Lascia il prossimo download nel browser”.</translation>
    </message>
    <message>
        <source>To see the videos of a page, click the Kovalo button.</source>
        <extracomment>Explanation</extracomment>
        <translation>Per vedere i video di una pagina, fai clic sul pulsante Kovalo.</translation>
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
        <translation>Maiusc</translation>
    </message>
    <message>
        <source>Files only</source>
        <extracomment>Choice among kinds of files: all but links to pages</extracomment>
        <translation>Solo file</translation>
    </message>
    <message>
        <source>This list is no longer known. Open it again from the page with the links.</source>
        <extracomment>In place of a list of links, when the browser was started anew</extracomment>
        <translation>Questo elenco non è più noto. Aprilo di nuovo dalla pagina con i link.</translation>
    </message>
    <message>
        <source>No link matches the filter.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Nessun link corrisponde al filtro.</translation>
    </message>
    <message>
        <source>Hold it while you click a link. If your desktop uses that key with the mouse itself, choose another one.</source>
        <extracomment>Below that option</extracomment>
        <translation>Tienilo premuto mentre fai clic su un link. Se il tuo desktop usa già quel tasto con il mouse, scegline un altro.</translation>
    </message>
    <message>
        <source>Whoever administers this computer forbids the browser to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Chi amministra questo computer vieta al browser di usare l’host di Kovalo.</translation>
    </message>
    <message>
        <source>The Kovalo host could not be started, or ended at once. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>L’host di Kovalo non è stato avviato o è terminato subito. $REASON$</translation>
    </message>
    <message>
        <source>Another program is in the place of the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Al posto dell’host di Kovalo c’è un altro programma.</translation>
    </message>
    <message>
        <source>There is no option $NAME$.</source>
        <extracomment>Error of the extension itself; never seen by users</extracomment>
        <translation>Non esiste l’opzione $NAME$.</translation>
    </message>
    <message>
        <source>The next download stays in the browser.</source>
        <extracomment>State, below the switch for catching downloads, while the button for that is pressed</extracomment>
        <translation>Il prossimo download resta nel browser.</translation>
    </message>
    <message>
        <source>Downloads from $HOST$ stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>I download da $HOST$ restano nel browser.</translation>
    </message>
    <message>
        <source>Kovalo works: this file came from the browser&apos;s extension.</source>
        <extracomment>The text in a test file</extracomment>
        <translation>Kovalo funziona: questo file è arrivato dall’estensione del browser.</translation>
    </message>
    <message>
        <source>Kovalo took the test file kovalo-test.txt. Look for it in your downloads folder.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo ha preso il file di prova kovalo-test.txt. Cercalo nella tua cartella dei download.</translation>
    </message>
</context>
<context>
    <name>KovNotifications</name>
    <message>
        <source>Download added</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>Download aggiunto</translation>
    </message>
    <message>
        <source>Downloads added: %1</source>
        <extracomment>Title of a notification; %1 is their number</extracomment>
        <translation>Download aggiunti: %1</translation>
    </message>
    <message>
        <source>Download finished</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>Download completato</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button of a notification: opens the file</extracomment>
        <translation>Apri</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <extracomment>Button of a notification: opens the folder in which the file is</extracomment>
        <translation>Mostra nella cartella</translation>
    </message>
    <message>
        <source>Download failed</source>
        <extracomment>Title of a notification; the file&apos;s name and the reason follow</extracomment>
        <translation>Download non riuscito</translation>
    </message>
    <message>
        <source>Retry</source>
        <extracomment>Button of a notification: tries the download again</extracomment>
        <translation>Riprova</translation>
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
        <translation>Scarica con %1</translation>
    </message>
    <message>
        <source>Download all with %1</source>
        <extracomment>Menu entry for all links of a page; %1 is the product&apos;s name</extracomment>
        <translation>Scarica tutto con %1</translation>
    </message>
    <message>
        <source>Download selected with %1</source>
        <extracomment>Menu entry for the links within the selected part of a page; %1 is the product&apos;s name</extracomment>
        <translation>Scarica selezione con %1</translation>
    </message>
    <message>
        <source>Download video with %1</source>
        <extracomment>Menu entry for a video; %1 is the product&apos;s name</extracomment>
        <translation>Scarica video con %1</translation>
    </message>
</context>
<context>
    <name>VhIpcIncomingDownloadsClient</name>
    <message>
        <source>Connection failure</source>
        <extracomment>The link to the download manager broke or could not be made</extracomment>
        <translation>Connessione non riuscita</translation>
    </message>
</context>
</TS>
