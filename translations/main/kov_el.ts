<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="el_GR" sourcelanguage="en_US">
<context>
    <name>Extension</name>
    <message>
        <source>Hands downloads over to the Kovalo download manager.</source>
        <extracomment>Shown in the browser&apos;s list of extensions</extracomment>
        <translation>Παραδίδει τις λήψεις στον διαχειριστή λήψεων Kovalo.</translation>
    </message>
    <message>
        <source>Options</source>
        <extracomment>Button and link
----------
Title of a page</extracomment>
        <translation>Επιλογές</translation>
    </message>
    <message>
        <source>Help and problems</source>
        <extracomment>Button and link to the page that explains the extension and checks it</extracomment>
        <translation>Βοήθεια και προβλήματα</translation>
    </message>
    <message>
        <source>Why?</source>
        <extracomment>Button beside a text on a problem; opens the page that finds the cause</extracomment>
        <translation>Γιατί;</translation>
    </message>
    <message>
        <source>Try again</source>
        <extracomment>Button</extracomment>
        <translation>Δοκιμή ξανά</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <extracomment>Button that takes away a text on a problem</extracomment>
        <translation>Απόκρυψη</translation>
    </message>
    <message>
        <source>Copy</source>
        <extracomment>Button that copies a command</extracomment>
        <translation>Αντιγραφή</translation>
    </message>
    <message>
        <source>Copied</source>
        <extracomment>The same button for a moment afterwards</extracomment>
        <translation>Αντιγράφηκε</translation>
    </message>
    <message>
        <source>Downloads go to Kovalo.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Οι λήψεις πηγαίνουν στο Kovalo.</translation>
    </message>
    <message>
        <source>Downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Οι λήψεις μένουν στον περιηγητή.</translation>
    </message>
    <message>
        <source>Kovalo is not connected, so downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Το Kovalo δεν είναι συνδεδεμένο, οπότε οι λήψεις μένουν στον περιηγητή.</translation>
    </message>
    <message>
        <source>Catch downloads</source>
        <extracomment>Switch: downloads that begin in the browser are handed over
----------
A link of the chain: an option that may be off</extracomment>
        <translation>Σύλληψη λήψεων</translation>
    </message>
    <message>
        <source>Not on $HOST$</source>
        <extracomment>Switch: downloads from this server stay in the browser</extracomment>
        <translation>Όχι στο $HOST$</translation>
    </message>
    <message>
        <source>Keep the next download in the browser</source>
        <extracomment>Name of a keyboard shortcut, in the browser&apos;s list
----------
Button that stays pressed until the next download</extracomment>
        <translation>Η επόμενη λήψη να μείνει στον περιηγητή</translation>
    </message>
    <message>
        <source>Or hold $KEY$ while you click a link.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>Ή κρατήστε πατημένο το $KEY$ όταν κάνετε κλικ σε σύνδεσμο.</translation>
    </message>
    <message>
        <source>Shortcut for the next one: $KEYS$.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>Συντόμευση για την επόμενη: $KEYS$.</translation>
    </message>
    <message>
        <source>No key</source>
        <extracomment>Choice among keys</extracomment>
        <translation>Κανένα πλήκτρο</translation>
    </message>
    <message>
        <source>Last downloads</source>
        <extracomment>Heading of a list</extracomment>
        <translation>Τελευταίες λήψεις</translation>
    </message>
    <message>
        <source>No download has been caught yet.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Δεν έχει συλληφθεί ακόμη καμία λήψη.</translation>
    </message>
    <message>
        <source>Download</source>
        <extracomment>In place of a file&apos;s name that is not known</extracomment>
        <translation>Λήψη</translation>
    </message>
    <message>
        <source>Handed over to Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Παραδόθηκε στο Kovalo</translation>
    </message>
    <message>
        <source>Declined in Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Απορρίφθηκε στο Kovalo</translation>
    </message>
    <message>
        <source>Kept in the browser</source>
        <extracomment>State of a download that was not handed over because the user or an option said so</extracomment>
        <translation>Έμεινε στον περιηγητή</translation>
    </message>
    <message>
        <source>Stays in the browser: $REASON$</source>
        <extracomment>State of a download that could not be handed over; the reason is a sentence</extracomment>
        <translation>Μένει στον περιηγητή: $REASON$</translation>
    </message>
    <message>
        <source>Saved twice: by the browser and by Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>Αποθηκεύτηκε δύο φορές: από τον περιηγητή και από το Kovalo</translation>
    </message>
    <message>
        <source>There are two copies of $NAME$: the browser had finished when Kovalo took it.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Υπάρχουν δύο αντίγραφα του $NAME$: ο περιηγητής είχε τελειώσει όταν το πήρε το Kovalo.</translation>
    </message>
    <message>
        <source>The browser goes on with $NAME$. Kovalo was asked to take it and has not answered, so it may have it, too.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Ο περιηγητής συνεχίζει με το $NAME$. Το Kovalo ερωτήθηκε και δεν απάντησε, οπότε ίσως το έχει κι αυτό.</translation>
    </message>
    <message>
        <source>The download of $NAME$ broke off. Begin it again on its page.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>Η λήψη του $NAME$ διακόπηκε. Ξεκινήστε την ξανά από τη σελίδα της.</translation>
    </message>
    <message>
        <source>In the browser, perhaps in Kovalo, too</source>
        <extracomment>State of a download</extracomment>
        <translation>Στον περιηγητή, ίσως και στο Kovalo</translation>
    </message>
    <message>
        <source>Broke off; begin it again on its page</source>
        <extracomment>State of a download</extracomment>
        <translation>Διακόπηκε· ξεκινήστε την ξανά από τη σελίδα της</translation>
    </message>
    <message>
        <source>On this page</source>
        <extracomment>Heading of a list of videos and sounds</extracomment>
        <translation>Σε αυτή τη σελίδα</translation>
    </message>
    <message>
        <source>No video has been seen on this page yet. Play it, or load the page again.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Δεν έχει εμφανιστεί ακόμη βίντεο σε αυτή τη σελίδα. Παίξτε το ή φορτώστε ξανά τη σελίδα.</translation>
    </message>
    <message>
        <source>Handed over to Kovalo.</source>
        <extracomment>After a click on a video</extracomment>
        <translation>Παραδόθηκε στο Kovalo.</translation>
    </message>
    <message>
        <source>Handing over…</source>
        <extracomment>While Kovalo has not answered yet</extracomment>
        <translation>Παράδοση…</translation>
    </message>
    <message>
        <source>Video</source>
        <extracomment>Kind of file</extracomment>
        <translation>Βίντεο</translation>
    </message>
    <message>
        <source>Sound</source>
        <extracomment>Kind of file</extracomment>
        <translation>Ήχος</translation>
    </message>
    <message>
        <source>Stream</source>
        <extracomment>Kind of media: a video that is sent in pieces</extracomment>
        <translation>Ροή</translation>
    </message>
    <message>
        <source>Choose among the links of this page…</source>
        <extracomment>Button; opens a page with a list of links</extracomment>
        <translation>Επιλογή από τους συνδέσμους της σελίδας…</translation>
    </message>
    <message>
        <source>Download links</source>
        <extracomment>Title of the page with a list of links</extracomment>
        <translation>Λήψη συνδέσμων</translation>
    </message>
    <message>
        <source>Filter by name or address</source>
        <extracomment>Hint in a search field</extracomment>
        <translation>Φίλτρο κατά όνομα ή διεύθυνση</translation>
    </message>
    <message>
        <source>Kind</source>
        <extracomment>Heading of a column, and name of a list to choose from</extracomment>
        <translation>Είδος</translation>
    </message>
    <message>
        <source>Every kind</source>
        <extracomment>Choice among kinds of files: no filter</extracomment>
        <translation>Κάθε είδος</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Heading of a column</extracomment>
        <translation>Όνομα</translation>
    </message>
    <message>
        <source>Server</source>
        <extracomment>Heading of a column</extracomment>
        <translation>Διακομιστής</translation>
    </message>
    <message>
        <source>All</source>
        <extracomment>Button: selects all links that are shown</extracomment>
        <translation>Όλα</translation>
    </message>
    <message>
        <source>None</source>
        <extracomment>Button: selects none of the links that are shown</extracomment>
        <translation>Κανένα</translation>
    </message>
    <message>
        <source>Download ($COUNT$)</source>
        <extracomment>Button; the count of selected links</extracomment>
        <translation>Λήψη ($COUNT$)</translation>
    </message>
    <message>
        <source>Handed over to Kovalo: $COUNT$</source>
        <extracomment>The count of links</extracomment>
        <translation>Παραδόθηκαν στο Kovalo: $COUNT$</translation>
    </message>
    <message>
        <source>This page has no links that can be downloaded.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Αυτή η σελίδα δεν έχει συνδέσμους για λήψη.</translation>
    </message>
    <message>
        <source>Image</source>
        <extracomment>Kind of file</extracomment>
        <translation>Εικόνα</translation>
    </message>
    <message>
        <source>Document</source>
        <extracomment>Kind of file</extracomment>
        <translation>Έγγραφο</translation>
    </message>
    <message>
        <source>Archive</source>
        <extracomment>Kind of file (zip and the like)</extracomment>
        <translation>Συμπιεσμένο αρχείο</translation>
    </message>
    <message>
        <source>Program</source>
        <extracomment>Kind of file</extracomment>
        <translation>Πρόγραμμα</translation>
    </message>
    <message>
        <source>Other file</source>
        <extracomment>Kind of file</extracomment>
        <translation>Άλλο αρχείο</translation>
    </message>
    <message>
        <source>Page</source>
        <extracomment>Kind of link: leads to a page, not to a file</extracomment>
        <translation>Σελίδα</translation>
    </message>
    <message>
        <source>The options are kept by Kovalo, which has not answered yet.</source>
        <extracomment>While the options cannot be shown</extracomment>
        <translation>Τις επιλογές τις κρατά το Kovalo, που δεν έχει απαντήσει ακόμη.</translation>
    </message>
    <message>
        <source>Saved</source>
        <extracomment>Shown for a moment after a change</extracomment>
        <translation>Αποθηκεύτηκε</translation>
    </message>
    <message>
        <source>Another program is using Kovalo&apos;s settings. Your changes hold, and are stored when it is done.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>Ένα άλλο πρόγραμμα χρησιμοποιεί τις ρυθμίσεις του Kovalo. Οι αλλαγές σας ισχύουν και θα αποθηκευτούν όταν τελειώσει.</translation>
    </message>
    <message>
        <source>Kovalo&apos;s settings cannot be stored on this computer. Your changes hold until the browser ends.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>Οι ρυθμίσεις του Kovalo δεν μπορούν να αποθηκευτούν σε αυτόν τον υπολογιστή. Οι αλλαγές σας ισχύουν μέχρι να κλείσει ο περιηγητής.</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Λήψεις που ξεκινούν στον περιηγητή</translation>
    </message>
    <message>
        <source>Hand them over to Kovalo</source>
        <extracomment>Option, below &quot;Downloads that begin in the browser&quot;</extracomment>
        <translation>Παράδοση στο Kovalo</translation>
    </message>
    <message>
        <source>Whatever cannot be handed over goes on in the browser.</source>
        <extracomment>Below that option</extracomment>
        <translation>Ό,τι δεν μπορεί να παραδοθεί συνεχίζεται στον περιηγητή.</translation>
    </message>
    <message>
        <source>Let the browser go on when a download is declined in Kovalo</source>
        <extracomment>Option</extracomment>
        <translation>Να συνεχίζει ο περιηγητής όταν μια λήψη απορρίπτεται στο Kovalo</translation>
    </message>
    <message>
        <source>Key that keeps a download in the browser</source>
        <extracomment>Option, a choice among keys</extracomment>
        <translation>Πλήκτρο που κρατά μια λήψη στον περιηγητή</translation>
    </message>
    <message>
        <source>What stays in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Τι μένει στον περιηγητή</translation>
    </message>
    <message>
        <source>Files smaller than</source>
        <extracomment>Option; a size follows</extracomment>
        <translation>Αρχεία μικρότερα από</translation>
    </message>
    <message>
        <source>Unit</source>
        <extracomment>Name of the choice among units of size</extracomment>
        <translation>Μονάδα</translation>
    </message>
    <message>
        <source>Files whose names end in</source>
        <extracomment>Option; a list of endings such as zip follows</extracomment>
        <translation>Αρχεία με όνομα που τελειώνει σε</translation>
    </message>
    <message>
        <source>For example: jpg, png, tmp*</source>
        <extracomment>Below that option</extracomment>
        <translation>Για παράδειγμα: jpg, png, tmp*</translation>
    </message>
    <message>
        <source>Files from these servers</source>
        <extracomment>Option; a list of servers follows</extracomment>
        <translation>Αρχεία από αυτούς τους διακομιστές</translation>
    </message>
    <message>
        <source>Servers</source>
        <extracomment>Name of a list</extracomment>
        <translation>Διακομιστές</translation>
    </message>
    <message>
        <source>One a line. A server covers those below it: example.com also means www.example.com.</source>
        <extracomment>Below that list</extracomment>
        <translation>Ένας ανά γραμμή. Ένας διακομιστής περιλαμβάνει και όσους είναι κάτω από αυτόν: example.com σημαίνει και www.example.com.</translation>
    </message>
    <message>
        <source>this would match everything</source>
        <extracomment>Why an entry of a list is not taken; follows the entry and a colon</extracomment>
        <translation>αυτό θα ταίριαζε με τα πάντα</translation>
    </message>
    <message>
        <source>only what stands after the last dot is compared</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>συγκρίνεται μόνο ό,τι βρίσκεται μετά την τελευταία τελεία</translation>
    </message>
    <message>
        <source>no name of a file ends like this</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>κανένα όνομα αρχείου δεν τελειώνει έτσι</translation>
    </message>
    <message>
        <source>no server is called this</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>κανένας διακομιστής δεν λέγεται έτσι</translation>
    </message>
    <message>
        <source>addresses with colons cannot be compared</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>διευθύνσεις με άνω και κάτω τελεία δεν συγκρίνονται</translation>
    </message>
    <message>
        <source>What you are told</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Τι σας γνωστοποιείται</translation>
    </message>
    <message>
        <source>Show on the button what became of a download</source>
        <extracomment>Option</extracomment>
        <translation>Να φαίνεται στο κουμπί τι απέγινε μια λήψη</translation>
    </message>
    <message>
        <source>Notify me when a download could not be handed over</source>
        <extracomment>Option</extracomment>
        <translation>Ειδοποίηση όταν μια λήψη δεν μπόρεσε να παραδοθεί</translation>
    </message>
    <message>
        <source>Notify me when a download was handed over</source>
        <extracomment>Option</extracomment>
        <translation>Ειδοποίηση όταν μια λήψη παραδόθηκε</translation>
    </message>
    <message>
        <source>Context menu</source>
        <extracomment>Heading of a group of options: entries of the menu of the right mouse button</extracomment>
        <translation>Μενού περιβάλλοντος</translation>
    </message>
    <message>
        <source>Download a link</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Λήψη συνδέσμου</translation>
    </message>
    <message>
        <source>Download the selected links</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Λήψη των επιλεγμένων συνδέσμων</translation>
    </message>
    <message>
        <source>Download all links of a page</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Λήψη όλων των συνδέσμων μιας σελίδας</translation>
    </message>
    <message>
        <source>Download a video</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>Λήψη βίντεο</translation>
    </message>
    <message>
        <source>Videos</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>Βίντεο</translation>
    </message>
    <message>
        <source>Look for videos and sound on all pages</source>
        <extracomment>Option</extracomment>
        <translation>Αναζήτηση βίντεο και ήχου σε όλες τις σελίδες</translation>
    </message>
    <message>
        <source>Otherwise only on pages where you open this extension or use its menu.</source>
        <extracomment>Below that option</extracomment>
        <translation>Διαφορετικά μόνο στις σελίδες όπου ανοίγετε αυτή την επέκταση ή χρησιμοποιείτε το μενού της.</translation>
    </message>
    <message>
        <source>Connected to the Kovalo host $VERSION$.</source>
        <extracomment>State; the host is the program between browser and application</extracomment>
        <translation>Σύνδεση με τον οικοδεσπότη του Kovalo $VERSION$.</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <extracomment>State</extracomment>
        <translation>Σύνδεση…</translation>
    </message>
    <message>
        <source>Kovalo for your browser</source>
        <extracomment>Title of the page that explains and checks the extension</extracomment>
        <translation>Kovalo για τον περιηγητή σας</translation>
    </message>
    <message>
        <source>What it does</source>
        <extracomment>Heading</extracomment>
        <translation>Τι κάνει</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser are handed over to Kovalo. What Kovalo does not take goes on in the browser; nothing is lost.</source>
        <extracomment>Explanation</extracomment>
        <translation>Οι λήψεις που ξεκινούν στον περιηγητή παραδίδονται στο Kovalo. Ό,τι δεν παίρνει το Kovalo συνεχίζεται στον περιηγητή· τίποτα δεν χάνεται.</translation>
    </message>
    <message>
        <source>Right-click a link, a selection or a video to hand it over yourself.</source>
        <extracomment>Explanation</extracomment>
        <translation>Κάντε δεξί κλικ σε σύνδεσμο, επιλογή ή βίντεο για να τα παραδώσετε εσείς.</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the pin beside Kovalo.</source>
        <extracomment>Explanation for Chromium and its kin</extracomment>
        <translation>Για να φαίνεται το κουμπί: κάντε κλικ στο κομμάτι παζλ της γραμμής εργαλείων και μετά στην πινέζα δίπλα στο Kovalo.</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the wheel beside Kovalo, then “Pin to Toolbar”.</source>
        <extracomment>Explanation for Firefox; the words in quotes are Firefox&apos;s own</extracomment>
        <translation>Για να φαίνεται το κουμπί: κάντε κλικ στο κομμάτι παζλ της γραμμής εργαλείων, μετά στο γρανάζι δίπλα στο Kovalo και μετά στο «Καρφίτσωμα στη γραμμή εργαλείων».</translation>
    </message>
    <message>
        <source>Is everything in place?</source>
        <extracomment>Heading</extracomment>
        <translation>Είναι όλα στη θέση τους;</translation>
    </message>
    <message>
        <source>Check again</source>
        <extracomment>Button</extracomment>
        <translation>Έλεγχος ξανά</translation>
    </message>
    <message>
        <source>Try a download</source>
        <extracomment>Button: makes a small test file</extracomment>
        <translation>Δοκιμή λήψης</translation>
    </message>
    <message>
        <source>Everything works.</source>
        <extracomment>Result of a check</extracomment>
        <translation>Όλα λειτουργούν.</translation>
    </message>
    <message>
        <source>Nothing is known to be broken. Try a download to be sure.</source>
        <extracomment>Result of a check</extracomment>
        <translation>Δεν είναι γνωστή καμία βλάβη. Δοκιμάστε μια λήψη για σιγουριά.</translation>
    </message>
    <message>
        <source>This link of the chain is broken: $STEP$</source>
        <extracomment>Result of a check; one of Browser, Access to pages, Kovalo host, Kovalo, Test download</extracomment>
        <translation>Αυτός ο κρίκος της αλυσίδας έχει σπάσει: $STEP$</translation>
    </message>
    <message>
        <source>In order</source>
        <extracomment>Name of a check mark</extracomment>
        <translation>Εντάξει</translation>
    </message>
    <message>
        <source>Broken</source>
        <extracomment>Name of a cross</extracomment>
        <translation>Χαλασμένο</translation>
    </message>
    <message>
        <source>Not checked</source>
        <extracomment>Name of a mark</extracomment>
        <translation>Δεν ελέγχθηκε</translation>
    </message>
    <message>
        <source>Browser</source>
        <extracomment>A link of the chain</extracomment>
        <translation>Περιηγητής</translation>
    </message>
    <message>
        <source>Access to pages</source>
        <extracomment>A link of the chain</extracomment>
        <translation>Πρόσβαση σε σελίδες</translation>
    </message>
    <message>
        <source>Kovalo host</source>
        <extracomment>A link of the chain: the program between browser and application</extracomment>
        <translation>Οικοδεσπότης του Kovalo</translation>
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
        <translation>Δοκιμαστική λήψη</translation>
    </message>
    <message>
        <source>The extension may see which downloads begin on pages.</source>
        <extracomment>State</extracomment>
        <translation>Η επέκταση μπορεί να δει ποιες λήψεις ξεκινούν σε σελίδες.</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so no download can be caught.</source>
        <extracomment>State</extracomment>
        <translation>Ο περιηγητής αρνείται την πρόσβαση σε σελίδες, οπότε καμία λήψη δεν μπορεί να συλληφθεί.</translation>
    </message>
    <message>
        <source>Allow access</source>
        <extracomment>Button</extracomment>
        <translation>Να επιτραπεί η πρόσβαση</translation>
    </message>
    <message>
        <source>Kovalo answered.</source>
        <extracomment>State</extracomment>
        <translation>Το Kovalo απάντησε.</translation>
    </message>
    <message>
        <source>Kovalo is started when there is something to download.</source>
        <extracomment>State</extracomment>
        <translation>Το Kovalo ξεκινά όταν υπάρχει κάτι για λήψη.</translation>
    </message>
    <message>
        <source>Not tried yet.</source>
        <extracomment>State</extracomment>
        <translation>Δεν έχει δοκιμαστεί ακόμη.</translation>
    </message>
    <message>
        <source>Nothing happens?</source>
        <extracomment>Heading</extracomment>
        <translation>Δεν συμβαίνει τίποτα;</translation>
    </message>
    <message>
        <source>Run this command in a terminal. It looks at every link of the chain and says how to mend it:</source>
        <extracomment>Explanation; a command follows</extracomment>
        <translation>Εκτελέστε αυτή την εντολή σε τερματικό. Ελέγχει κάθε κρίκο της αλυσίδας και λέει πώς επισκευάζεται:</translation>
    </message>
    <message>
        <source>The Kovalo host is not installed, or not registered for this browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Ο οικοδεσπότης του Kovalo δεν είναι εγκατεστημένος ή δεν είναι καταχωρισμένος για αυτόν τον περιηγητή.</translation>
    </message>
    <message>
        <source>This extension is not allowed to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Αυτή η επέκταση δεν επιτρέπεται να χρησιμοποιεί τον οικοδεσπότη του Kovalo.</translation>
    </message>
    <message>
        <source>The Kovalo host stopped. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>Ο οικοδεσπότης του Kovalo σταμάτησε. $REASON$</translation>
    </message>
    <message>
        <source>The Kovalo host was started but does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>Ο οικοδεσπότης του Kovalo ξεκίνησε αλλά δεν απαντά.</translation>
    </message>
    <message>
        <source>Kovalo is not installed beside its host, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Το Kovalo δεν είναι εγκατεστημένο δίπλα στον οικοδεσπότη του, οπότε οι λήψεις μένουν στον περιηγητή.</translation>
    </message>
    <message>
        <source>Kovalo does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>Το Kovalo δεν απαντά.</translation>
    </message>
    <message>
        <source>Kovalo did not take the download: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>Το Kovalo δεν πήρε τη λήψη: $REASON$</translation>
    </message>
    <message>
        <source>Kovalo did not say whether it took the download.</source>
        <extracomment>Problem</extracomment>
        <translation>Το Kovalo δεν είπε αν πήρε τη λήψη.</translation>
    </message>
    <message>
        <source>Kovalo did not start, or ended before it answered.</source>
        <extracomment>Problem</extracomment>
        <translation>Το Kovalo δεν ξεκίνησε ή τερματίστηκε πριν απαντήσει.</translation>
    </message>
    <message>
        <source>Kovalo cannot download from this address.</source>
        <extracomment>Problem</extracomment>
        <translation>Το Kovalo δεν μπορεί να κάνει λήψη από αυτή τη διεύθυνση.</translation>
    </message>
    <message>
        <source>There is nothing to download here.</source>
        <extracomment>Problem</extracomment>
        <translation>Δεν υπάρχει τίποτα για λήψη εδώ.</translation>
    </message>
    <message>
        <source>No video was seen here. Play it, or load the page again, and try once more.</source>
        <extracomment>Problem</extracomment>
        <translation>Δεν εμφανίστηκε βίντεο εδώ. Παίξτε το ή φορτώστε ξανά τη σελίδα και δοκιμάστε άλλη μια φορά.</translation>
    </message>
    <message>
        <source>The options were not stored: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>Οι επιλογές δεν αποθηκεύτηκαν: $REASON$</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Ο περιηγητής αρνείται την πρόσβαση σε σελίδες, οπότε οι λήψεις μένουν στον περιηγητή.</translation>
    </message>
    <message>
        <source>$NAME$ → Kovalo</source>
        <extracomment>Notification; the name of a file</extracomment>
        <translation>$NAME$ → Kovalo</translation>
    </message>
    <message>
        <source>The browser lets the extension see some sites only. Downloads from others stay in the browser.</source>
        <extracomment>State</extracomment>
        <translation>Ο περιηγητής αφήνει την επέκταση να βλέπει μόνο ορισμένους ιστότοπους. Οι λήψεις από άλλους μένουν στον περιηγητή.</translation>
    </message>
    <message>
        <source>Does the terminal not know this command? Then install Kovalo first. If you unpacked it from an archive, the command is in its folder “bin”.</source>
        <extracomment>Below a command on the page on problems</extracomment>
        <translation>Το τερματικό δεν γνωρίζει αυτή την εντολή; Τότε εγκαταστήστε πρώτα το Kovalo. Αν το αποσυμπιέσατε από αρχείο, η εντολή βρίσκεται στον φάκελό του «bin».</translation>
    </message>
    <message>
        <source>To keep one download in the browser, click the Kovalo button in the toolbar, then “Keep the next download in the browser”.</source>
        <extracomment>Explanation; the words in quotes are the text of a button, see there</extracomment>
        <translation>Για να μείνει μια λήψη στον περιηγητή, κάντε κλικ στο κουμπί Kovalo της γραμμής εργαλείων και μετά στο «Η επόμενη λήψη να μείνει στον περιηγητή».</translation>
    </message>
    <message>
        <source>To see the videos of a page, click the Kovalo button.</source>
        <extracomment>Explanation</extracomment>
        <translation>Για να δείτε τα βίντεο μιας σελίδας, κάντε κλικ στο κουμπί Kovalo.</translation>
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
        <translation>Μόνο αρχεία</translation>
    </message>
    <message>
        <source>This list is no longer known. Open it again from the page with the links.</source>
        <extracomment>In place of a list of links, when the browser was started anew</extracomment>
        <translation>Αυτή η λίστα δεν είναι πλέον γνωστή. Ανοίξτε την ξανά από τη σελίδα με τους συνδέσμους.</translation>
    </message>
    <message>
        <source>No link matches the filter.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>Κανένας σύνδεσμος δεν ταιριάζει στο φίλτρο.</translation>
    </message>
    <message>
        <source>Hold it while you click a link. If your desktop uses that key with the mouse itself, choose another one.</source>
        <extracomment>Below that option</extracomment>
        <translation>Κρατήστε το πατημένο όταν κάνετε κλικ σε σύνδεσμο. Αν η επιφάνεια εργασίας χρησιμοποιεί ήδη αυτό το πλήκτρο με το ποντίκι, επιλέξτε άλλο.</translation>
    </message>
    <message>
        <source>Whoever administers this computer forbids the browser to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Ο διαχειριστής αυτού του υπολογιστή απαγορεύει στον περιηγητή να χρησιμοποιεί τον οικοδεσπότη του Kovalo.</translation>
    </message>
    <message>
        <source>The Kovalo host could not be started, or ended at once. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>Ο οικοδεσπότης του Kovalo δεν μπόρεσε να ξεκινήσει ή τερματίστηκε αμέσως. $REASON$</translation>
    </message>
    <message>
        <source>Another program is in the place of the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Στη θέση του οικοδεσπότη του Kovalo βρίσκεται άλλο πρόγραμμα.</translation>
    </message>
    <message>
        <source>There is no option $NAME$.</source>
        <extracomment>Error of the extension itself; never seen by users</extracomment>
        <translation>Δεν υπάρχει επιλογή $NAME$.</translation>
    </message>
    <message>
        <source>The next download stays in the browser.</source>
        <extracomment>State, below the switch for catching downloads, while the button for that is pressed</extracomment>
        <translation>Η επόμενη λήψη μένει στον περιηγητή.</translation>
    </message>
    <message>
        <source>Downloads from $HOST$ stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>Οι λήψεις από $HOST$ μένουν στον περιηγητή.</translation>
    </message>
    <message>
        <source>Kovalo works: this file came from the browser&apos;s extension.</source>
        <extracomment>The text in a test file</extracomment>
        <translation>Το Kovalo λειτουργεί: αυτό το αρχείο ήρθε από την επέκταση του περιηγητή.</translation>
    </message>
    <message>
        <source>Kovalo took the test file kovalo-test.txt. Look for it in your downloads folder.</source>
        <extracomment>State</extracomment>
        <translation>Το Kovalo πήρε το δοκιμαστικό αρχείο kovalo-test.txt. Θα το βρείτε στον φάκελο λήψεών σας.</translation>
    </message>
</context>
<context>
    <name>KovNotifications</name>
    <message>
        <source>Download added</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>Η λήψη προστέθηκε</translation>
    </message>
    <message>
        <source>Downloads added: %1</source>
        <extracomment>Title of a notification; %1 is their number</extracomment>
        <translation>Λήψεις που προστέθηκαν: %1</translation>
    </message>
    <message>
        <source>Download finished</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>Η λήψη ολοκληρώθηκε</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button of a notification: opens the file</extracomment>
        <translation>Άνοιγμα</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <extracomment>Button of a notification: opens the folder in which the file is</extracomment>
        <translation>Εμφάνιση στον φάκελο</translation>
    </message>
    <message>
        <source>Download failed</source>
        <extracomment>Title of a notification; the file&apos;s name and the reason follow</extracomment>
        <translation>Η λήψη απέτυχε</translation>
    </message>
    <message>
        <source>Retry</source>
        <extracomment>Button of a notification: tries the download again</extracomment>
        <translation>Επανάληψη</translation>
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
        <translation>Λήψη με το %1</translation>
    </message>
    <message>
        <source>Download all with %1</source>
        <extracomment>Menu entry for all links of a page; %1 is the product&apos;s name</extracomment>
        <translation>Λήψη όλων με το %1</translation>
    </message>
    <message>
        <source>Download selected with %1</source>
        <extracomment>Menu entry for the links within the selected part of a page; %1 is the product&apos;s name</extracomment>
        <translation>Λήψη επιλεγμένων με το %1</translation>
    </message>
    <message>
        <source>Download video with %1</source>
        <extracomment>Menu entry for a video; %1 is the product&apos;s name</extracomment>
        <translation>Λήψη βίντεο με το %1</translation>
    </message>
</context>
<context>
    <name>VhIpcIncomingDownloadsClient</name>
    <message>
        <source>Connection failure</source>
        <extracomment>The link to the download manager broke or could not be made</extracomment>
        <translation>Αποτυχία σύνδεσης</translation>
    </message>
</context>
</TS>
