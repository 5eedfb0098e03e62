<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="th_TH" sourcelanguage="en_US">
<context>
    <name>Extension</name>
    <message>
        <source>Hands downloads over to the Kovalo download manager.</source>
        <extracomment>Shown in the browser&apos;s list of extensions</extracomment>
        <translation>ส่งต่อการดาวน์โหลดให้โปรแกรมจัดการดาวน์โหลด Kovalo</translation>
    </message>
    <message>
        <source>Options</source>
        <extracomment>Button and link
----------
Title of a page</extracomment>
        <translation>ตัวเลือก</translation>
    </message>
    <message>
        <source>Help and problems</source>
        <extracomment>Button and link to the page that explains the extension and checks it</extracomment>
        <translation>วิธีใช้และปัญหา</translation>
    </message>
    <message>
        <source>Why?</source>
        <extracomment>Button beside a text on a problem; opens the page that finds the cause</extracomment>
        <translation>ทำไม?</translation>
    </message>
    <message>
        <source>Try again</source>
        <extracomment>Button</extracomment>
        <translation>ลองอีกครั้ง</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <extracomment>Button that takes away a text on a problem</extracomment>
        <translation>ซ่อน</translation>
    </message>
    <message>
        <source>Copy</source>
        <extracomment>Button that copies a command</extracomment>
        <translation>คัดลอก</translation>
    </message>
    <message>
        <source>Copied</source>
        <extracomment>The same button for a moment afterwards</extracomment>
        <translation>คัดลอกแล้ว</translation>
    </message>
    <message>
        <source>Downloads go to Kovalo.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>การดาวน์โหลดจะไปที่ Kovalo</translation>
    </message>
    <message>
        <source>Downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>การดาวน์โหลดจะอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Kovalo is not connected, so downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>ไม่ได้เชื่อมต่อกับ Kovalo การดาวน์โหลดจึงอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Catch downloads</source>
        <extracomment>Switch: downloads that begin in the browser are handed over
----------
A link of the chain: an option that may be off</extracomment>
        <translation>จับการดาวน์โหลด</translation>
    </message>
    <message>
        <source>Not on $HOST$</source>
        <extracomment>Switch: downloads from this server stay in the browser</extracomment>
        <translation>ไม่ใช้บน $HOST$</translation>
    </message>
    <message>
        <source>Keep the next download in the browser</source>
        <extracomment>Name of a keyboard shortcut, in the browser&apos;s list
----------
Button that stays pressed until the next download</extracomment>
        <translation>ให้การดาวน์โหลดถัดไปอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Or hold $KEY$ while you click a link.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>หรือกด $KEY$ ค้างไว้ขณะคลิกลิงก์</translation>
    </message>
    <message>
        <source>Shortcut for the next one: $KEYS$.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>ปุ่มลัดสำหรับรายการถัดไป: $KEYS$</translation>
    </message>
    <message>
        <source>No key</source>
        <extracomment>Choice among keys</extracomment>
        <translation>ไม่ใช้ปุ่ม</translation>
    </message>
    <message>
        <source>Last downloads</source>
        <extracomment>Heading of a list</extracomment>
        <translation>การดาวน์โหลดล่าสุด</translation>
    </message>
    <message>
        <source>No download has been caught yet.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>ยังไม่มีการดาวน์โหลดที่จับได้</translation>
    </message>
    <message>
        <source>Download</source>
        <extracomment>In place of a file&apos;s name that is not known</extracomment>
        <translation>การดาวน์โหลด</translation>
    </message>
    <message>
        <source>Handed over to Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>ส่งต่อให้ Kovalo แล้ว</translation>
    </message>
    <message>
        <source>Declined in Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>ถูกปฏิเสธใน Kovalo</translation>
    </message>
    <message>
        <source>Kept in the browser</source>
        <extracomment>State of a download that was not handed over because the user or an option said so</extracomment>
        <translation>อยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Stays in the browser: $REASON$</source>
        <extracomment>State of a download that could not be handed over; the reason is a sentence</extracomment>
        <translation>อยู่ในเบราว์เซอร์: $REASON$</translation>
    </message>
    <message>
        <source>Saved twice: by the browser and by Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>บันทึกสองครั้ง: โดยเบราว์เซอร์และ Kovalo</translation>
    </message>
    <message>
        <source>There are two copies of $NAME$: the browser had finished when Kovalo took it.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>มี $NAME$ สองชุด: เบราว์เซอร์เสร็จแล้วเมื่อ Kovalo รับไป</translation>
    </message>
    <message>
        <source>The browser goes on with $NAME$. Kovalo was asked to take it and has not answered, so it may have it, too.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>เบราว์เซอร์ดาวน์โหลด $NAME$ ต่อ Kovalo ถูกขอแต่ยังไม่ตอบ จึงอาจมีไฟล์นี้ด้วย</translation>
    </message>
    <message>
        <source>The download of $NAME$ broke off. Begin it again on its page.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>การดาวน์โหลด $NAME$ ขาดตอน โปรดเริ่มใหม่จากหน้าของมัน</translation>
    </message>
    <message>
        <source>In the browser, perhaps in Kovalo, too</source>
        <extracomment>State of a download</extracomment>
        <translation>ในเบราว์เซอร์ และอาจอยู่ใน Kovalo ด้วย</translation>
    </message>
    <message>
        <source>Broke off; begin it again on its page</source>
        <extracomment>State of a download</extracomment>
        <translation>ขาดตอน โปรดเริ่มใหม่จากหน้าของมัน</translation>
    </message>
    <message>
        <source>On this page</source>
        <extracomment>Heading of a list of videos and sounds</extracomment>
        <translation>ในหน้านี้</translation>
    </message>
    <message>
        <source>No video has been seen on this page yet. Play it, or load the page again.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>ยังไม่พบวิดีโอในหน้านี้ โปรดเล่นวิดีโอหรือโหลดหน้าใหม่</translation>
    </message>
    <message>
        <source>Handed over to Kovalo.</source>
        <extracomment>After a click on a video</extracomment>
        <translation>ส่งต่อให้ Kovalo แล้ว</translation>
    </message>
    <message>
        <source>Handing over…</source>
        <extracomment>While Kovalo has not answered yet</extracomment>
        <translation>กำลังส่งต่อ…</translation>
    </message>
    <message>
        <source>Video</source>
        <extracomment>Kind of file</extracomment>
        <translation>วิดีโอ</translation>
    </message>
    <message>
        <source>Sound</source>
        <extracomment>Kind of file</extracomment>
        <translation>เสียง</translation>
    </message>
    <message>
        <source>Stream</source>
        <extracomment>Kind of media: a video that is sent in pieces</extracomment>
        <translation>สตรีม</translation>
    </message>
    <message>
        <source>Choose among the links of this page…</source>
        <extracomment>Button; opens a page with a list of links</extracomment>
        <translation>เลือกจากลิงก์ในหน้านี้…</translation>
    </message>
    <message>
        <source>Download links</source>
        <extracomment>Title of the page with a list of links</extracomment>
        <translation>ดาวน์โหลดลิงก์</translation>
    </message>
    <message>
        <source>Filter by name or address</source>
        <extracomment>Hint in a search field</extracomment>
        <translation>กรองตามชื่อหรือที่อยู่</translation>
    </message>
    <message>
        <source>Kind</source>
        <extracomment>Heading of a column, and name of a list to choose from</extracomment>
        <translation>ชนิด</translation>
    </message>
    <message>
        <source>Every kind</source>
        <extracomment>Choice among kinds of files: no filter</extracomment>
        <translation>ทุกชนิด</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Heading of a column</extracomment>
        <translation>ชื่อ</translation>
    </message>
    <message>
        <source>Server</source>
        <extracomment>Heading of a column</extracomment>
        <translation>เซิร์ฟเวอร์</translation>
    </message>
    <message>
        <source>All</source>
        <extracomment>Button: selects all links that are shown</extracomment>
        <translation>ทั้งหมด</translation>
    </message>
    <message>
        <source>None</source>
        <extracomment>Button: selects none of the links that are shown</extracomment>
        <translation>ไม่เลือก</translation>
    </message>
    <message>
        <source>Download ($COUNT$)</source>
        <extracomment>Button; the count of selected links</extracomment>
        <translation>ดาวน์โหลด ($COUNT$)</translation>
    </message>
    <message>
        <source>Handed over to Kovalo: $COUNT$</source>
        <extracomment>The count of links</extracomment>
        <translation>ส่งต่อให้ Kovalo แล้ว: $COUNT$</translation>
    </message>
    <message>
        <source>This page has no links that can be downloaded.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>หน้านี้ไม่มีลิงก์ที่ดาวน์โหลดได้</translation>
    </message>
    <message>
        <source>Image</source>
        <extracomment>Kind of file</extracomment>
        <translation>รูปภาพ</translation>
    </message>
    <message>
        <source>Document</source>
        <extracomment>Kind of file</extracomment>
        <translation>เอกสาร</translation>
    </message>
    <message>
        <source>Archive</source>
        <extracomment>Kind of file (zip and the like)</extracomment>
        <translation>ไฟล์บีบอัด</translation>
    </message>
    <message>
        <source>Program</source>
        <extracomment>Kind of file</extracomment>
        <translation>โปรแกรม</translation>
    </message>
    <message>
        <source>Other file</source>
        <extracomment>Kind of file</extracomment>
        <translation>ไฟล์อื่น</translation>
    </message>
    <message>
        <source>Page</source>
        <extracomment>Kind of link: leads to a page, not to a file</extracomment>
        <translation>หน้าเว็บ</translation>
    </message>
    <message>
        <source>The options are kept by Kovalo, which has not answered yet.</source>
        <extracomment>While the options cannot be shown</extracomment>
        <translation>Kovalo เป็นผู้เก็บตัวเลือก และยังไม่ตอบ</translation>
    </message>
    <message>
        <source>Saved</source>
        <extracomment>Shown for a moment after a change</extracomment>
        <translation>บันทึกแล้ว</translation>
    </message>
    <message>
        <source>Another program is using Kovalo&apos;s settings. Your changes hold, and are stored when it is done.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>โปรแกรมอื่นกำลังใช้การตั้งค่าของ Kovalo การเปลี่ยนแปลงมีผลแล้วและจะบันทึกเมื่อเสร็จ</translation>
    </message>
    <message>
        <source>Kovalo&apos;s settings cannot be stored on this computer. Your changes hold until the browser ends.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>บันทึกการตั้งค่าของ Kovalo ในเครื่องนี้ไม่ได้ การเปลี่ยนแปลงมีผลจนกว่าจะปิดเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>การดาวน์โหลดที่เริ่มในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Hand them over to Kovalo</source>
        <extracomment>Option, below &quot;Downloads that begin in the browser&quot;</extracomment>
        <translation>ส่งต่อให้ Kovalo</translation>
    </message>
    <message>
        <source>Whatever cannot be handed over goes on in the browser.</source>
        <extracomment>Below that option</extracomment>
        <translation>สิ่งที่ส่งต่อไม่ได้จะดำเนินต่อในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Let the browser go on when a download is declined in Kovalo</source>
        <extracomment>Option</extracomment>
        <translation>ให้เบราว์เซอร์ดำเนินต่อเมื่อการดาวน์โหลดถูกปฏิเสธใน Kovalo</translation>
    </message>
    <message>
        <source>Key that keeps a download in the browser</source>
        <extracomment>Option, a choice among keys</extracomment>
        <translation>ปุ่มที่ให้การดาวน์โหลดอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>What stays in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>สิ่งที่อยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Files smaller than</source>
        <extracomment>Option; a size follows</extracomment>
        <translation>ไฟล์ที่เล็กกว่า</translation>
    </message>
    <message>
        <source>Unit</source>
        <extracomment>Name of the choice among units of size</extracomment>
        <translation>หน่วย</translation>
    </message>
    <message>
        <source>Files whose names end in</source>
        <extracomment>Option; a list of endings such as zip follows</extracomment>
        <translation>ไฟล์ที่ชื่อลงท้ายด้วย</translation>
    </message>
    <message>
        <source>For example: jpg, png, tmp*</source>
        <extracomment>Below that option</extracomment>
        <translation>เช่น: jpg, png, tmp*</translation>
    </message>
    <message>
        <source>Files from these servers</source>
        <extracomment>Option; a list of servers follows</extracomment>
        <translation>ไฟล์จากเซิร์ฟเวอร์เหล่านี้</translation>
    </message>
    <message>
        <source>Servers</source>
        <extracomment>Name of a list</extracomment>
        <translation>เซิร์ฟเวอร์</translation>
    </message>
    <message>
        <source>One a line. A server covers those below it: example.com also means www.example.com.</source>
        <extracomment>Below that list</extracomment>
        <translation>บรรทัดละหนึ่ง เซิร์ฟเวอร์รวมถึงที่อยู่ใต้ลงไป: example.com หมายถึง www.example.com ด้วย</translation>
    </message>
    <message>
        <source>this would match everything</source>
        <extracomment>Why an entry of a list is not taken; follows the entry and a colon</extracomment>
        <translation>จะตรงกับทุกอย่าง</translation>
    </message>
    <message>
        <source>only what stands after the last dot is compared</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>เปรียบเทียบเฉพาะส่วนหลังจุดสุดท้าย</translation>
    </message>
    <message>
        <source>no name of a file ends like this</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>ไม่มีชื่อไฟล์ลงท้ายแบบนี้</translation>
    </message>
    <message>
        <source>no server is called this</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>ไม่มีเซิร์ฟเวอร์ชื่อนี้</translation>
    </message>
    <message>
        <source>addresses with colons cannot be compared</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>เปรียบเทียบที่อยู่ที่มีทวิภาคไม่ได้</translation>
    </message>
    <message>
        <source>What you are told</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>สิ่งที่แจ้งให้คุณทราบ</translation>
    </message>
    <message>
        <source>Show on the button what became of a download</source>
        <extracomment>Option</extracomment>
        <translation>แสดงผลของการดาวน์โหลดบนปุ่ม</translation>
    </message>
    <message>
        <source>Notify me when a download could not be handed over</source>
        <extracomment>Option</extracomment>
        <translation>แจ้งเมื่อส่งต่อการดาวน์โหลดไม่ได้</translation>
    </message>
    <message>
        <source>Notify me when a download was handed over</source>
        <extracomment>Option</extracomment>
        <translation>แจ้งเมื่อส่งต่อการดาวน์โหลดแล้ว</translation>
    </message>
    <message>
        <source>Context menu</source>
        <extracomment>Heading of a group of options: entries of the menu of the right mouse button</extracomment>
        <translation>เมนูบริบท</translation>
    </message>
    <message>
        <source>Download a link</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>ดาวน์โหลดลิงก์</translation>
    </message>
    <message>
        <source>Download the selected links</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>ดาวน์โหลดลิงก์ที่เลือก</translation>
    </message>
    <message>
        <source>Download all links of a page</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>ดาวน์โหลดลิงก์ทั้งหมดของหน้า</translation>
    </message>
    <message>
        <source>Download a video</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>ดาวน์โหลดวิดีโอ</translation>
    </message>
    <message>
        <source>Videos</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>วิดีโอ</translation>
    </message>
    <message>
        <source>Look for videos and sound on all pages</source>
        <extracomment>Option</extracomment>
        <translation>มองหาวิดีโอและเสียงในทุกหน้า</translation>
    </message>
    <message>
        <source>Otherwise only on pages where you open this extension or use its menu.</source>
        <extracomment>Below that option</extracomment>
        <translation>มิฉะนั้นเฉพาะหน้าที่คุณเปิดส่วนขยายนี้หรือใช้เมนูของมัน</translation>
    </message>
    <message>
        <source>Connected to the Kovalo host $VERSION$.</source>
        <extracomment>State; the host is the program between browser and application</extracomment>
        <translation>เชื่อมต่อกับโฮสต์ Kovalo $VERSION$ แล้ว</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <extracomment>State</extracomment>
        <translation>กำลังเชื่อมต่อ…</translation>
    </message>
    <message>
        <source>Kovalo for your browser</source>
        <extracomment>Title of the page that explains and checks the extension</extracomment>
        <translation>Kovalo สำหรับเบราว์เซอร์ของคุณ</translation>
    </message>
    <message>
        <source>What it does</source>
        <extracomment>Heading</extracomment>
        <translation>ทำอะไรบ้าง</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser are handed over to Kovalo. What Kovalo does not take goes on in the browser; nothing is lost.</source>
        <extracomment>Explanation</extracomment>
        <translation>การดาวน์โหลดที่เริ่มในเบราว์เซอร์จะส่งต่อให้ Kovalo สิ่งที่ Kovalo ไม่รับจะดำเนินต่อในเบราว์เซอร์ ไม่มีอะไรสูญหาย</translation>
    </message>
    <message>
        <source>Right-click a link, a selection or a video to hand it over yourself.</source>
        <extracomment>Explanation</extracomment>
        <translation>คลิกขวาที่ลิงก์ ส่วนที่เลือก หรือวิดีโอเพื่อส่งต่อด้วยตัวเอง</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the pin beside Kovalo.</source>
        <extracomment>Explanation for Chromium and its kin</extracomment>
        <translation>เพื่อให้ปุ่มอยู่ในสายตา: คลิกชิ้นส่วนจิ๊กซอว์บนแถบเครื่องมือ แล้วคลิกหมุดข้าง Kovalo</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the wheel beside Kovalo, then “Pin to Toolbar”.</source>
        <extracomment>Explanation for Firefox; the words in quotes are Firefox&apos;s own</extracomment>
        <translation>เพื่อให้ปุ่มอยู่ในสายตา: คลิกชิ้นส่วนจิ๊กซอว์บนแถบเครื่องมือ คลิกเฟืองข้าง Kovalo แล้วคลิก “ปักหมุดไปยังแถบเครื่องมือ”</translation>
    </message>
    <message>
        <source>Is everything in place?</source>
        <extracomment>Heading</extracomment>
        <translation>ทุกอย่างพร้อมหรือไม่?</translation>
    </message>
    <message>
        <source>Check again</source>
        <extracomment>Button</extracomment>
        <translation>ตรวจอีกครั้ง</translation>
    </message>
    <message>
        <source>Try a download</source>
        <extracomment>Button: makes a small test file</extracomment>
        <translation>ลองดาวน์โหลด</translation>
    </message>
    <message>
        <source>Everything works.</source>
        <extracomment>Result of a check</extracomment>
        <translation>ทุกอย่างทำงานได้</translation>
    </message>
    <message>
        <source>Nothing is known to be broken. Try a download to be sure.</source>
        <extracomment>Result of a check</extracomment>
        <translation>ไม่พบสิ่งที่เสีย ลองดาวน์โหลดเพื่อความแน่ใจ</translation>
    </message>
    <message>
        <source>This link of the chain is broken: $STEP$</source>
        <extracomment>Result of a check; one of Browser, Access to pages, Kovalo host, Kovalo, Test download</extracomment>
        <translation>ข้อต่อนี้ขาด: $STEP$</translation>
    </message>
    <message>
        <source>In order</source>
        <extracomment>Name of a check mark</extracomment>
        <translation>ปกติ</translation>
    </message>
    <message>
        <source>Broken</source>
        <extracomment>Name of a cross</extracomment>
        <translation>เสีย</translation>
    </message>
    <message>
        <source>Not checked</source>
        <extracomment>Name of a mark</extracomment>
        <translation>ยังไม่ได้ตรวจ</translation>
    </message>
    <message>
        <source>Browser</source>
        <extracomment>A link of the chain</extracomment>
        <translation>เบราว์เซอร์</translation>
    </message>
    <message>
        <source>Access to pages</source>
        <extracomment>A link of the chain</extracomment>
        <translation>การเข้าถึงหน้าเว็บ</translation>
    </message>
    <message>
        <source>Kovalo host</source>
        <extracomment>A link of the chain: the program between browser and application</extracomment>
        <translation>โฮสต์ Kovalo</translation>
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
        <translation>การดาวน์โหลดทดสอบ</translation>
    </message>
    <message>
        <source>The extension may see which downloads begin on pages.</source>
        <extracomment>State</extracomment>
        <translation>ส่วนขยายเห็นได้ว่าการดาวน์โหลดใดเริ่มบนหน้าเว็บ</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so no download can be caught.</source>
        <extracomment>State</extracomment>
        <translation>เบราว์เซอร์ไม่ให้เข้าถึงหน้าเว็บ จึงจับการดาวน์โหลดไม่ได้</translation>
    </message>
    <message>
        <source>Allow access</source>
        <extracomment>Button</extracomment>
        <translation>อนุญาตการเข้าถึง</translation>
    </message>
    <message>
        <source>Kovalo answered.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo ตอบแล้ว</translation>
    </message>
    <message>
        <source>Kovalo is started when there is something to download.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo จะเริ่มเมื่อมีสิ่งให้ดาวน์โหลด</translation>
    </message>
    <message>
        <source>Not tried yet.</source>
        <extracomment>State</extracomment>
        <translation>ยังไม่ได้ลอง</translation>
    </message>
    <message>
        <source>Nothing happens?</source>
        <extracomment>Heading</extracomment>
        <translation>ไม่มีอะไรเกิดขึ้น?</translation>
    </message>
    <message>
        <source>Run this command in a terminal. It looks at every link of the chain and says how to mend it:</source>
        <extracomment>Explanation; a command follows</extracomment>
        <translation>เรียกคำสั่งนี้ในเทอร์มินัล คำสั่งจะดูทุกข้อต่อและบอกวิธีแก้:</translation>
    </message>
    <message>
        <source>The Kovalo host is not installed, or not registered for this browser.</source>
        <extracomment>Problem</extracomment>
        <translation>ยังไม่ได้ติดตั้งโฮสต์ Kovalo หรือยังไม่ได้ลงทะเบียนกับเบราว์เซอร์นี้</translation>
    </message>
    <message>
        <source>This extension is not allowed to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>ส่วนขยายนี้ไม่ได้รับอนุญาตให้ใช้โฮสต์ Kovalo</translation>
    </message>
    <message>
        <source>The Kovalo host stopped. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>โฮสต์ Kovalo หยุดแล้ว $REASON$</translation>
    </message>
    <message>
        <source>The Kovalo host was started but does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>เริ่มโฮสต์ Kovalo แล้วแต่ไม่ตอบ</translation>
    </message>
    <message>
        <source>Kovalo is not installed beside its host, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>ไม่ได้ติดตั้ง Kovalo ข้างโฮสต์ของมัน การดาวน์โหลดจึงอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Kovalo does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo ไม่ตอบ</translation>
    </message>
    <message>
        <source>Kovalo did not take the download: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>Kovalo ไม่รับการดาวน์โหลด: $REASON$</translation>
    </message>
    <message>
        <source>Kovalo did not say whether it took the download.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo ไม่ได้บอกว่ารับการดาวน์โหลดหรือไม่</translation>
    </message>
    <message>
        <source>Kovalo did not start, or ended before it answered.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo ไม่เริ่มทำงาน หรือปิดตัวก่อนตอบ</translation>
    </message>
    <message>
        <source>Kovalo cannot download from this address.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo ดาวน์โหลดจากที่อยู่นี้ไม่ได้</translation>
    </message>
    <message>
        <source>There is nothing to download here.</source>
        <extracomment>Problem</extracomment>
        <translation>ไม่มีอะไรให้ดาวน์โหลดที่นี่</translation>
    </message>
    <message>
        <source>No video was seen here. Play it, or load the page again, and try once more.</source>
        <extracomment>Problem</extracomment>
        <translation>ไม่พบวิดีโอที่นี่ โปรดเล่นวิดีโอหรือโหลดหน้าใหม่แล้วลองอีกครั้ง</translation>
    </message>
    <message>
        <source>The options were not stored: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>ตัวเลือกไม่ถูกบันทึก: $REASON$</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>เบราว์เซอร์ไม่ให้เข้าถึงหน้าเว็บ การดาวน์โหลดจึงอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>$NAME$ → Kovalo</source>
        <extracomment>Notification; the name of a file</extracomment>
        <translation>$NAME$ → Kovalo</translation>
    </message>
    <message>
        <source>The browser lets the extension see some sites only. Downloads from others stay in the browser.</source>
        <extracomment>State</extracomment>
        <translation>เบราว์เซอร์ให้ส่วนขยายเห็นเพียงบางไซต์ การดาวน์โหลดจากไซต์อื่นจะอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Does the terminal not know this command? Then install Kovalo first. If you unpacked it from an archive, the command is in its folder “bin”.</source>
        <extracomment>Below a command on the page on problems</extracomment>
        <translation>เทอร์มินัลไม่รู้จักคำสั่งนี้หรือ ให้ติดตั้ง Kovalo ก่อน หากคุณแตกไฟล์จากไฟล์บีบอัด คำสั่งจะอยู่ในโฟลเดอร์ “bin” ของมัน</translation>
    </message>
    <message>
        <source>To keep one download in the browser, click the Kovalo button in the toolbar, then “Keep the next download in the browser”.</source>
        <extracomment>Explanation; the words in quotes are the text of a button, see there</extracomment>
        <translation>หากต้องการให้การดาวน์โหลดหนึ่งอยู่ในเบราว์เซอร์ ให้คลิกปุ่ม Kovalo บนแถบเครื่องมือ แล้วคลิก “ให้การดาวน์โหลดถัดไปอยู่ในเบราว์เซอร์”</translation>
    </message>
    <message>
        <source>To see the videos of a page, click the Kovalo button.</source>
        <extracomment>Explanation</extracomment>
        <translation>หากต้องการดูวิดีโอของหน้า ให้คลิกปุ่ม Kovalo</translation>
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
        <translation>เฉพาะไฟล์</translation>
    </message>
    <message>
        <source>This list is no longer known. Open it again from the page with the links.</source>
        <extracomment>In place of a list of links, when the browser was started anew</extracomment>
        <translation>ไม่มีรายการนี้แล้ว โปรดเปิดใหม่จากหน้าที่มีลิงก์</translation>
    </message>
    <message>
        <source>No link matches the filter.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>ไม่มีลิงก์ที่ตรงกับตัวกรอง</translation>
    </message>
    <message>
        <source>Hold it while you click a link. If your desktop uses that key with the mouse itself, choose another one.</source>
        <extracomment>Below that option</extracomment>
        <translation>กดค้างไว้ขณะคลิกลิงก์ หากเดสก์ท็อปใช้ปุ่มนี้ร่วมกับเมาส์อยู่แล้ว ให้เลือกปุ่มอื่น</translation>
    </message>
    <message>
        <source>Whoever administers this computer forbids the browser to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>ผู้ดูแลคอมพิวเตอร์เครื่องนี้ห้ามเบราว์เซอร์ใช้โฮสต์ Kovalo</translation>
    </message>
    <message>
        <source>The Kovalo host could not be started, or ended at once. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>เริ่มโฮสต์ Kovalo ไม่ได้ หรือโฮสต์ปิดตัวทันที $REASON$</translation>
    </message>
    <message>
        <source>Another program is in the place of the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>มีโปรแกรมอื่นอยู่แทนที่โฮสต์ Kovalo</translation>
    </message>
    <message>
        <source>There is no option $NAME$.</source>
        <extracomment>Error of the extension itself; never seen by users</extracomment>
        <translation>ไม่มีตัวเลือก $NAME$</translation>
    </message>
    <message>
        <source>The next download stays in the browser.</source>
        <extracomment>State, below the switch for catching downloads, while the button for that is pressed</extracomment>
        <translation>การดาวน์โหลดถัดไปจะอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Downloads from $HOST$ stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>การดาวน์โหลดจาก $HOST$ จะอยู่ในเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Kovalo works: this file came from the browser&apos;s extension.</source>
        <extracomment>The text in a test file</extracomment>
        <translation>Kovalo ทำงานได้: ไฟล์นี้มาจากส่วนขยายของเบราว์เซอร์</translation>
    </message>
    <message>
        <source>Kovalo took the test file kovalo-test.txt. Look for it in your downloads folder.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo รับไฟล์ทดสอบ kovalo-test.txt แล้ว ดูได้ในโฟลเดอร์ดาวน์โหลดของคุณ</translation>
    </message>
</context>
<context>
    <name>KovNotifications</name>
    <message>
        <source>Download added</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>เพิ่มการดาวน์โหลดแล้ว</translation>
    </message>
    <message>
        <source>Downloads added: %1</source>
        <extracomment>Title of a notification; %1 is their number</extracomment>
        <translation>เพิ่มการดาวน์โหลดแล้ว: %1</translation>
    </message>
    <message>
        <source>Download finished</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>ดาวน์โหลดเสร็จแล้ว</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button of a notification: opens the file</extracomment>
        <translation>เปิด</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <extracomment>Button of a notification: opens the folder in which the file is</extracomment>
        <translation>แสดงในโฟลเดอร์</translation>
    </message>
    <message>
        <source>Download failed</source>
        <extracomment>Title of a notification; the file&apos;s name and the reason follow</extracomment>
        <translation>ดาวน์โหลดไม่สำเร็จ</translation>
    </message>
    <message>
        <source>Retry</source>
        <extracomment>Button of a notification: tries the download again</extracomment>
        <translation>ลองอีกครั้ง</translation>
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
        <translation>ดาวน์โหลดด้วย %1</translation>
    </message>
    <message>
        <source>Download all with %1</source>
        <extracomment>Menu entry for all links of a page; %1 is the product&apos;s name</extracomment>
        <translation>ดาวน์โหลดทั้งหมดด้วย %1</translation>
    </message>
    <message>
        <source>Download selected with %1</source>
        <extracomment>Menu entry for the links within the selected part of a page; %1 is the product&apos;s name</extracomment>
        <translation>ดาวน์โหลดรายการที่เลือกด้วย %1</translation>
    </message>
    <message>
        <source>Download video with %1</source>
        <extracomment>Menu entry for a video; %1 is the product&apos;s name</extracomment>
        <translation>ดาวน์โหลดวิดีโอด้วย %1</translation>
    </message>
</context>
<context>
    <name>VhIpcIncomingDownloadsClient</name>
    <message>
        <source>Connection failure</source>
        <extracomment>The link to the download manager broke or could not be made</extracomment>
        <translation>การเชื่อมต่อล้มเหลว</translation>
    </message>
</context>
</TS>
