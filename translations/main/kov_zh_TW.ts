<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW" sourcelanguage="en_US">
<context>
    <name>Extension</name>
    <message>
        <source>Hands downloads over to the Kovalo download manager.</source>
        <extracomment>Shown in the browser&apos;s list of extensions</extracomment>
        <translation>將下載交給 Kovalo 下載管理員。</translation>
    </message>
    <message>
        <source>Options</source>
        <extracomment>Button and link
----------
Title of a page</extracomment>
        <translation>選項</translation>
    </message>
    <message>
        <source>Help and problems</source>
        <extracomment>Button and link to the page that explains the extension and checks it</extracomment>
        <translation>說明與問題</translation>
    </message>
    <message>
        <source>Why?</source>
        <extracomment>Button beside a text on a problem; opens the page that finds the cause</extracomment>
        <translation>為什麼?</translation>
    </message>
    <message>
        <source>Try again</source>
        <extracomment>Button</extracomment>
        <translation>重試</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <extracomment>Button that takes away a text on a problem</extracomment>
        <translation>關閉</translation>
    </message>
    <message>
        <source>Copy</source>
        <extracomment>Button that copies a command</extracomment>
        <translation>複製</translation>
    </message>
    <message>
        <source>Copied</source>
        <extracomment>The same button for a moment afterwards</extracomment>
        <translation>已複製</translation>
    </message>
    <message>
        <source>Downloads go to Kovalo.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>下載會交給 Kovalo。</translation>
    </message>
    <message>
        <source>Downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>下載留在瀏覽器中。</translation>
    </message>
    <message>
        <source>Kovalo is not connected, so downloads stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>未連線到 Kovalo,因此下載留在瀏覽器中。</translation>
    </message>
    <message>
        <source>Catch downloads</source>
        <extracomment>Switch: downloads that begin in the browser are handed over
----------
A link of the chain: an option that may be off</extracomment>
        <translation>接管下載</translation>
    </message>
    <message>
        <source>Not on $HOST$</source>
        <extracomment>Switch: downloads from this server stay in the browser</extracomment>
        <translation>不在 $HOST$ 上接管</translation>
    </message>
    <message>
        <source>Keep the next download in the browser</source>
        <extracomment>Name of a keyboard shortcut, in the browser&apos;s list
----------
Button that stays pressed until the next download</extracomment>
        <translation>讓下一個下載留在瀏覽器中</translation>
    </message>
    <message>
        <source>Or hold $KEY$ while you click a link.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>或在點按連結時按住 $KEY$。</translation>
    </message>
    <message>
        <source>Shortcut for the next one: $KEYS$.</source>
        <extracomment>After a text on keeping one download in the browser</extracomment>
        <translation>用於下一個下載的快速鍵:$KEYS$。</translation>
    </message>
    <message>
        <source>No key</source>
        <extracomment>Choice among keys</extracomment>
        <translation>不使用按鍵</translation>
    </message>
    <message>
        <source>Last downloads</source>
        <extracomment>Heading of a list</extracomment>
        <translation>最近的下載</translation>
    </message>
    <message>
        <source>No download has been caught yet.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>尚未接管過任何下載。</translation>
    </message>
    <message>
        <source>Download</source>
        <extracomment>In place of a file&apos;s name that is not known</extracomment>
        <translation>下載</translation>
    </message>
    <message>
        <source>Handed over to Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>已交給 Kovalo</translation>
    </message>
    <message>
        <source>Declined in Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>在 Kovalo 中被拒絕</translation>
    </message>
    <message>
        <source>Kept in the browser</source>
        <extracomment>State of a download that was not handed over because the user or an option said so</extracomment>
        <translation>留在瀏覽器中</translation>
    </message>
    <message>
        <source>Stays in the browser: $REASON$</source>
        <extracomment>State of a download that could not be handed over; the reason is a sentence</extracomment>
        <translation>留在瀏覽器中:$REASON$</translation>
    </message>
    <message>
        <source>Saved twice: by the browser and by Kovalo</source>
        <extracomment>State of a download</extracomment>
        <translation>儲存了兩份:瀏覽器和 Kovalo 各一份</translation>
    </message>
    <message>
        <source>There are two copies of $NAME$: the browser had finished when Kovalo took it.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>$NAME$ 有兩份:Kovalo 接收時瀏覽器已經完成。</translation>
    </message>
    <message>
        <source>The browser goes on with $NAME$. Kovalo was asked to take it and has not answered, so it may have it, too.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>瀏覽器繼續下載 $NAME$。Kovalo 尚未回應,所以它可能也有一份。</translation>
    </message>
    <message>
        <source>The download of $NAME$ broke off. Begin it again on its page.</source>
        <extracomment>Problem; the name of a file</extracomment>
        <translation>$NAME$ 的下載中斷了。請在其頁面上重新開始。</translation>
    </message>
    <message>
        <source>In the browser, perhaps in Kovalo, too</source>
        <extracomment>State of a download</extracomment>
        <translation>在瀏覽器中,也可能在 Kovalo 中</translation>
    </message>
    <message>
        <source>Broke off; begin it again on its page</source>
        <extracomment>State of a download</extracomment>
        <translation>已中斷;請在其頁面上重新開始</translation>
    </message>
    <message>
        <source>On this page</source>
        <extracomment>Heading of a list of videos and sounds</extracomment>
        <translation>在此頁面上</translation>
    </message>
    <message>
        <source>No video has been seen on this page yet. Play it, or load the page again.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>此頁面上尚未發現影片。請播放影片或重新載入頁面。</translation>
    </message>
    <message>
        <source>Handed over to Kovalo.</source>
        <extracomment>After a click on a video</extracomment>
        <translation>已交給 Kovalo。</translation>
    </message>
    <message>
        <source>Handing over…</source>
        <extracomment>While Kovalo has not answered yet</extracomment>
        <translation>正在移交…</translation>
    </message>
    <message>
        <source>Video</source>
        <extracomment>Kind of file</extracomment>
        <translation>影片</translation>
    </message>
    <message>
        <source>Sound</source>
        <extracomment>Kind of file</extracomment>
        <translation>音訊</translation>
    </message>
    <message>
        <source>Stream</source>
        <extracomment>Kind of media: a video that is sent in pieces</extracomment>
        <translation>串流</translation>
    </message>
    <message>
        <source>Choose among the links of this page…</source>
        <extracomment>Button; opens a page with a list of links</extracomment>
        <translation>從此頁面的連結中選擇…</translation>
    </message>
    <message>
        <source>Download links</source>
        <extracomment>Title of the page with a list of links</extracomment>
        <translation>下載連結</translation>
    </message>
    <message>
        <source>Filter by name or address</source>
        <extracomment>Hint in a search field</extracomment>
        <translation>依名稱或位址篩選</translation>
    </message>
    <message>
        <source>Kind</source>
        <extracomment>Heading of a column, and name of a list to choose from</extracomment>
        <translation>類型</translation>
    </message>
    <message>
        <source>Every kind</source>
        <extracomment>Choice among kinds of files: no filter</extracomment>
        <translation>所有類型</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Heading of a column</extracomment>
        <translation>名稱</translation>
    </message>
    <message>
        <source>Server</source>
        <extracomment>Heading of a column</extracomment>
        <translation>伺服器</translation>
    </message>
    <message>
        <source>All</source>
        <extracomment>Button: selects all links that are shown</extracomment>
        <translation>全選</translation>
    </message>
    <message>
        <source>None</source>
        <extracomment>Button: selects none of the links that are shown</extracomment>
        <translation>全不選</translation>
    </message>
    <message>
        <source>Download ($COUNT$)</source>
        <extracomment>Button; the count of selected links</extracomment>
        <translation>下載($COUNT$)</translation>
    </message>
    <message>
        <source>Handed over to Kovalo: $COUNT$</source>
        <extracomment>The count of links</extracomment>
        <translation>已交給 Kovalo:$COUNT$</translation>
    </message>
    <message>
        <source>This page has no links that can be downloaded.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>此頁面沒有可下載的連結。</translation>
    </message>
    <message>
        <source>Image</source>
        <extracomment>Kind of file</extracomment>
        <translation>圖片</translation>
    </message>
    <message>
        <source>Document</source>
        <extracomment>Kind of file</extracomment>
        <translation>文件</translation>
    </message>
    <message>
        <source>Archive</source>
        <extracomment>Kind of file (zip and the like)</extracomment>
        <translation>壓縮檔</translation>
    </message>
    <message>
        <source>Program</source>
        <extracomment>Kind of file</extracomment>
        <translation>程式</translation>
    </message>
    <message>
        <source>Other file</source>
        <extracomment>Kind of file</extracomment>
        <translation>其他檔案</translation>
    </message>
    <message>
        <source>Page</source>
        <extracomment>Kind of link: leads to a page, not to a file</extracomment>
        <translation>網頁</translation>
    </message>
    <message>
        <source>The options are kept by Kovalo, which has not answered yet.</source>
        <extracomment>While the options cannot be shown</extracomment>
        <translation>選項由 Kovalo 保管,它尚未回應。</translation>
    </message>
    <message>
        <source>Saved</source>
        <extracomment>Shown for a moment after a change</extracomment>
        <translation>已儲存</translation>
    </message>
    <message>
        <source>Another program is using Kovalo&apos;s settings. Your changes hold, and are stored when it is done.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>另一個程式正在使用 Kovalo 的設定。您的變更已生效,待其結束後儲存。</translation>
    </message>
    <message>
        <source>Kovalo&apos;s settings cannot be stored on this computer. Your changes hold until the browser ends.</source>
        <extracomment>State, on the page of options</extracomment>
        <translation>無法在此電腦上儲存 Kovalo 的設定。您的變更在瀏覽器關閉前有效。</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>在瀏覽器中開始的下載</translation>
    </message>
    <message>
        <source>Hand them over to Kovalo</source>
        <extracomment>Option, below &quot;Downloads that begin in the browser&quot;</extracomment>
        <translation>交給 Kovalo</translation>
    </message>
    <message>
        <source>Whatever cannot be handed over goes on in the browser.</source>
        <extracomment>Below that option</extracomment>
        <translation>無法移交的下載會在瀏覽器中繼續。</translation>
    </message>
    <message>
        <source>Let the browser go on when a download is declined in Kovalo</source>
        <extracomment>Option</extracomment>
        <translation>在 Kovalo 中拒絕下載時,讓瀏覽器繼續</translation>
    </message>
    <message>
        <source>Key that keeps a download in the browser</source>
        <extracomment>Option, a choice among keys</extracomment>
        <translation>使下載留在瀏覽器中的按鍵</translation>
    </message>
    <message>
        <source>What stays in the browser</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>留在瀏覽器中的下載</translation>
    </message>
    <message>
        <source>Files smaller than</source>
        <extracomment>Option; a size follows</extracomment>
        <translation>小於此大小的檔案</translation>
    </message>
    <message>
        <source>Unit</source>
        <extracomment>Name of the choice among units of size</extracomment>
        <translation>單位</translation>
    </message>
    <message>
        <source>Files whose names end in</source>
        <extracomment>Option; a list of endings such as zip follows</extracomment>
        <translation>名稱以此結尾的檔案</translation>
    </message>
    <message>
        <source>For example: jpg, png, tmp*</source>
        <extracomment>Below that option</extracomment>
        <translation>例如:jpg, png, tmp*</translation>
    </message>
    <message>
        <source>Files from these servers</source>
        <extracomment>Option; a list of servers follows</extracomment>
        <translation>來自這些伺服器的檔案</translation>
    </message>
    <message>
        <source>Servers</source>
        <extracomment>Name of a list</extracomment>
        <translation>伺服器</translation>
    </message>
    <message>
        <source>One a line. A server covers those below it: example.com also means www.example.com.</source>
        <extracomment>Below that list</extracomment>
        <translation>每行一個。伺服器包括其下層:example.com 也表示 www.example.com。</translation>
    </message>
    <message>
        <source>this would match everything</source>
        <extracomment>Why an entry of a list is not taken; follows the entry and a colon</extracomment>
        <translation>這會符合所有內容</translation>
    </message>
    <message>
        <source>only what stands after the last dot is compared</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>只比較最後一個點之後的部分</translation>
    </message>
    <message>
        <source>no name of a file ends like this</source>
        <extracomment>Why an ending is not taken; follows the entry and a colon</extracomment>
        <translation>沒有檔名這樣結尾</translation>
    </message>
    <message>
        <source>no server is called this</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>沒有這樣命名的伺服器</translation>
    </message>
    <message>
        <source>addresses with colons cannot be compared</source>
        <extracomment>Why a server is not taken; follows the entry and a colon</extracomment>
        <translation>無法比較含冒號的位址</translation>
    </message>
    <message>
        <source>What you are told</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>通知內容</translation>
    </message>
    <message>
        <source>Show on the button what became of a download</source>
        <extracomment>Option</extracomment>
        <translation>在按鈕上顯示下載的結果</translation>
    </message>
    <message>
        <source>Notify me when a download could not be handed over</source>
        <extracomment>Option</extracomment>
        <translation>下載無法移交時通知我</translation>
    </message>
    <message>
        <source>Notify me when a download was handed over</source>
        <extracomment>Option</extracomment>
        <translation>下載移交後通知我</translation>
    </message>
    <message>
        <source>Context menu</source>
        <extracomment>Heading of a group of options: entries of the menu of the right mouse button</extracomment>
        <translation>右鍵選單</translation>
    </message>
    <message>
        <source>Download a link</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>下載連結</translation>
    </message>
    <message>
        <source>Download the selected links</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>下載選取的連結</translation>
    </message>
    <message>
        <source>Download all links of a page</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>下載頁面的所有連結</translation>
    </message>
    <message>
        <source>Download a video</source>
        <extracomment>Option: an entry of the context menu</extracomment>
        <translation>下載影片</translation>
    </message>
    <message>
        <source>Videos</source>
        <extracomment>Heading of a group of options</extracomment>
        <translation>影片</translation>
    </message>
    <message>
        <source>Look for videos and sound on all pages</source>
        <extracomment>Option</extracomment>
        <translation>在所有頁面上尋找影片和音訊</translation>
    </message>
    <message>
        <source>Otherwise only on pages where you open this extension or use its menu.</source>
        <extracomment>Below that option</extracomment>
        <translation>否則只在您開啟此擴充功能或使用其選單的頁面上尋找。</translation>
    </message>
    <message>
        <source>Connected to the Kovalo host $VERSION$.</source>
        <extracomment>State; the host is the program between browser and application</extracomment>
        <translation>已連線到 Kovalo 主機程式 $VERSION$。</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <extracomment>State</extracomment>
        <translation>正在連線…</translation>
    </message>
    <message>
        <source>Kovalo for your browser</source>
        <extracomment>Title of the page that explains and checks the extension</extracomment>
        <translation>適用於您瀏覽器的 Kovalo</translation>
    </message>
    <message>
        <source>What it does</source>
        <extracomment>Heading</extracomment>
        <translation>它的作用</translation>
    </message>
    <message>
        <source>Downloads that begin in the browser are handed over to Kovalo. What Kovalo does not take goes on in the browser; nothing is lost.</source>
        <extracomment>Explanation</extracomment>
        <translation>在瀏覽器中開始的下載會交給 Kovalo。Kovalo 不接收的會在瀏覽器中繼續,不會遺失任何內容。</translation>
    </message>
    <message>
        <source>Right-click a link, a selection or a video to hand it over yourself.</source>
        <extracomment>Explanation</extracomment>
        <translation>在連結、選取內容或影片上按右鍵,即可自行移交。</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the pin beside Kovalo.</source>
        <extracomment>Explanation for Chromium and its kin</extracomment>
        <translation>要讓按鈕一直可見:點按工具列上的拼圖圖示,再點按 Kovalo 旁的圖釘。</translation>
    </message>
    <message>
        <source>To keep the button in sight: click the puzzle piece in the toolbar, then the wheel beside Kovalo, then “Pin to Toolbar”.</source>
        <extracomment>Explanation for Firefox; the words in quotes are Firefox&apos;s own</extracomment>
        <translation>要讓按鈕一直可見:點按工具列上的拼圖圖示,再點按 Kovalo 旁的齒輪,然後點按「釘選到工具列」。</translation>
    </message>
    <message>
        <source>Is everything in place?</source>
        <extracomment>Heading</extracomment>
        <translation>一切就緒了嗎?</translation>
    </message>
    <message>
        <source>Check again</source>
        <extracomment>Button</extracomment>
        <translation>重新檢查</translation>
    </message>
    <message>
        <source>Try a download</source>
        <extracomment>Button: makes a small test file</extracomment>
        <translation>試一次下載</translation>
    </message>
    <message>
        <source>Everything works.</source>
        <extracomment>Result of a check</extracomment>
        <translation>一切正常。</translation>
    </message>
    <message>
        <source>Nothing is known to be broken. Try a download to be sure.</source>
        <extracomment>Result of a check</extracomment>
        <translation>沒有發現故障。試一次下載以確認。</translation>
    </message>
    <message>
        <source>This link of the chain is broken: $STEP$</source>
        <extracomment>Result of a check; one of Browser, Access to pages, Kovalo host, Kovalo, Test download</extracomment>
        <translation>鏈條的這一環斷了:$STEP$</translation>
    </message>
    <message>
        <source>In order</source>
        <extracomment>Name of a check mark</extracomment>
        <translation>正常</translation>
    </message>
    <message>
        <source>Broken</source>
        <extracomment>Name of a cross</extracomment>
        <translation>故障</translation>
    </message>
    <message>
        <source>Not checked</source>
        <extracomment>Name of a mark</extracomment>
        <translation>未檢查</translation>
    </message>
    <message>
        <source>Browser</source>
        <extracomment>A link of the chain</extracomment>
        <translation>瀏覽器</translation>
    </message>
    <message>
        <source>Access to pages</source>
        <extracomment>A link of the chain</extracomment>
        <translation>頁面存取權</translation>
    </message>
    <message>
        <source>Kovalo host</source>
        <extracomment>A link of the chain: the program between browser and application</extracomment>
        <translation>Kovalo 主機程式</translation>
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
        <translation>測試下載</translation>
    </message>
    <message>
        <source>The extension may see which downloads begin on pages.</source>
        <extracomment>State</extracomment>
        <translation>擴充功能可以看到頁面上開始了哪些下載。</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so no download can be caught.</source>
        <extracomment>State</extracomment>
        <translation>瀏覽器不允許存取頁面,因此無法接管下載。</translation>
    </message>
    <message>
        <source>Allow access</source>
        <extracomment>Button</extracomment>
        <translation>允許存取</translation>
    </message>
    <message>
        <source>Kovalo answered.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo 已回應。</translation>
    </message>
    <message>
        <source>Kovalo is started when there is something to download.</source>
        <extracomment>State</extracomment>
        <translation>有內容要下載時會啟動 Kovalo。</translation>
    </message>
    <message>
        <source>Not tried yet.</source>
        <extracomment>State</extracomment>
        <translation>尚未嘗試。</translation>
    </message>
    <message>
        <source>Nothing happens?</source>
        <extracomment>Heading</extracomment>
        <translation>沒有反應?</translation>
    </message>
    <message>
        <source>Run this command in a terminal. It looks at every link of the chain and says how to mend it:</source>
        <extracomment>Explanation; a command follows</extracomment>
        <translation>在終端機中執行此命令。它會檢查鏈條的每一環並說明如何修復:</translation>
    </message>
    <message>
        <source>The Kovalo host is not installed, or not registered for this browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo 主機程式未安裝,或未在此瀏覽器中註冊。</translation>
    </message>
    <message>
        <source>This extension is not allowed to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>此擴充功能無權使用 Kovalo 主機程式。</translation>
    </message>
    <message>
        <source>The Kovalo host stopped. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>Kovalo 主機程式已停止。$REASON$</translation>
    </message>
    <message>
        <source>The Kovalo host was started but does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo 主機程式已啟動,但沒有回應。</translation>
    </message>
    <message>
        <source>Kovalo is not installed beside its host, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo 沒有安裝在其主機程式旁邊,因此下載留在瀏覽器中。</translation>
    </message>
    <message>
        <source>Kovalo does not answer.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo 沒有回應。</translation>
    </message>
    <message>
        <source>Kovalo did not take the download: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>Kovalo 沒有接收下載:$REASON$</translation>
    </message>
    <message>
        <source>Kovalo did not say whether it took the download.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo 沒有說明是否接收了下載。</translation>
    </message>
    <message>
        <source>Kovalo did not start, or ended before it answered.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo 沒有啟動,或在回應之前結束了。</translation>
    </message>
    <message>
        <source>Kovalo cannot download from this address.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo 無法從此位址下載。</translation>
    </message>
    <message>
        <source>There is nothing to download here.</source>
        <extracomment>Problem</extracomment>
        <translation>這裡沒有可下載的內容。</translation>
    </message>
    <message>
        <source>No video was seen here. Play it, or load the page again, and try once more.</source>
        <extracomment>Problem</extracomment>
        <translation>這裡沒有發現影片。請播放影片或重新載入頁面,然後再試一次。</translation>
    </message>
    <message>
        <source>The options were not stored: $REASON$</source>
        <extracomment>Problem; the reason comes from Kovalo</extracomment>
        <translation>選項未儲存:$REASON$</translation>
    </message>
    <message>
        <source>The browser withholds access to pages, so downloads stay in the browser.</source>
        <extracomment>Problem</extracomment>
        <translation>瀏覽器不允許存取頁面,因此下載留在瀏覽器中。</translation>
    </message>
    <message>
        <source>$NAME$ → Kovalo</source>
        <extracomment>Notification; the name of a file</extracomment>
        <translation>$NAME$ → Kovalo</translation>
    </message>
    <message>
        <source>The browser lets the extension see some sites only. Downloads from others stay in the browser.</source>
        <extracomment>State</extracomment>
        <translation>瀏覽器只允許擴充功能檢視部分網站。來自其他網站的下載留在瀏覽器中。</translation>
    </message>
    <message>
        <source>Does the terminal not know this command? Then install Kovalo first. If you unpacked it from an archive, the command is in its folder “bin”.</source>
        <extracomment>Below a command on the page on problems</extracomment>
        <translation>終端機不認得此命令?請先安裝 Kovalo。如果是從壓縮檔解開的,該命令在其「bin」資料夾中。</translation>
    </message>
    <message>
        <source>To keep one download in the browser, click the Kovalo button in the toolbar, then “Keep the next download in the browser”.</source>
        <extracomment>Explanation; the words in quotes are the text of a button, see there</extracomment>
        <translation>要讓一個下載留在瀏覽器中,請點按工具列上的 Kovalo 按鈕,再點按「讓下一個下載留在瀏覽器中」。</translation>
    </message>
    <message>
        <source>To see the videos of a page, click the Kovalo button.</source>
        <extracomment>Explanation</extracomment>
        <translation>要檢視頁面上的影片,請點按 Kovalo 按鈕。</translation>
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
        <translation>僅檔案</translation>
    </message>
    <message>
        <source>This list is no longer known. Open it again from the page with the links.</source>
        <extracomment>In place of a list of links, when the browser was started anew</extracomment>
        <translation>此清單已不存在。請從含有連結的頁面重新開啟。</translation>
    </message>
    <message>
        <source>No link matches the filter.</source>
        <extracomment>In place of an empty list</extracomment>
        <translation>沒有符合篩選條件的連結。</translation>
    </message>
    <message>
        <source>Hold it while you click a link. If your desktop uses that key with the mouse itself, choose another one.</source>
        <extracomment>Below that option</extracomment>
        <translation>點按連結時按住它。如果桌面環境已將該鍵與滑鼠一起使用,請選擇其他鍵。</translation>
    </message>
    <message>
        <source>Whoever administers this computer forbids the browser to use the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>此電腦的管理員禁止瀏覽器使用 Kovalo 主機程式。</translation>
    </message>
    <message>
        <source>The Kovalo host could not be started, or ended at once. $REASON$</source>
        <extracomment>Problem; the reason is the browser&apos;s own sentence</extracomment>
        <translation>Kovalo 主機程式無法啟動,或立即結束了。$REASON$</translation>
    </message>
    <message>
        <source>Another program is in the place of the Kovalo host.</source>
        <extracomment>Problem</extracomment>
        <translation>Kovalo 主機程式的位置上是另一個程式。</translation>
    </message>
    <message>
        <source>There is no option $NAME$.</source>
        <extracomment>Error of the extension itself; never seen by users</extracomment>
        <translation>沒有選項 $NAME$。</translation>
    </message>
    <message>
        <source>The next download stays in the browser.</source>
        <extracomment>State, below the switch for catching downloads, while the button for that is pressed</extracomment>
        <translation>下一個下載留在瀏覽器中。</translation>
    </message>
    <message>
        <source>Downloads from $HOST$ stay in the browser.</source>
        <extracomment>State, below the switch for catching downloads</extracomment>
        <translation>來自 $HOST$ 的下載留在瀏覽器中。</translation>
    </message>
    <message>
        <source>Kovalo works: this file came from the browser&apos;s extension.</source>
        <extracomment>The text in a test file</extracomment>
        <translation>Kovalo 運作正常:此檔案來自瀏覽器的擴充功能。</translation>
    </message>
    <message>
        <source>Kovalo took the test file kovalo-test.txt. Look for it in your downloads folder.</source>
        <extracomment>State</extracomment>
        <translation>Kovalo 已接收測試檔案 kovalo-test.txt。請在您的下載資料夾中查看。</translation>
    </message>
</context>
<context>
    <name>KovNotifications</name>
    <message>
        <source>Download added</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>已新增下載</translation>
    </message>
    <message>
        <source>Downloads added: %1</source>
        <extracomment>Title of a notification; %1 is their number</extracomment>
        <translation>已新增的下載：%1</translation>
    </message>
    <message>
        <source>Download finished</source>
        <extracomment>Title of a notification; the file&apos;s name follows</extracomment>
        <translation>下載完成</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button of a notification: opens the file</extracomment>
        <translation>開啟</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <extracomment>Button of a notification: opens the folder in which the file is</extracomment>
        <translation>在資料夾中顯示</translation>
    </message>
    <message>
        <source>Download failed</source>
        <extracomment>Title of a notification; the file&apos;s name and the reason follow</extracomment>
        <translation>下載失敗</translation>
    </message>
    <message>
        <source>Retry</source>
        <extracomment>Button of a notification: tries the download again</extracomment>
        <translation>重試</translation>
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
        <translation>使用 %1 下載</translation>
    </message>
    <message>
        <source>Download all with %1</source>
        <extracomment>Menu entry for all links of a page; %1 is the product&apos;s name</extracomment>
        <translation>使用 %1 下載全部</translation>
    </message>
    <message>
        <source>Download selected with %1</source>
        <extracomment>Menu entry for the links within the selected part of a page; %1 is the product&apos;s name</extracomment>
        <translation>使用 %1 下載選取項目</translation>
    </message>
    <message>
        <source>Download video with %1</source>
        <extracomment>Menu entry for a video; %1 is the product&apos;s name</extracomment>
        <translation>使用 %1 下載影片</translation>
    </message>
</context>
<context>
    <name>VhIpcIncomingDownloadsClient</name>
    <message>
        <source>Connection failure</source>
        <extracomment>The link to the download manager broke or could not be made</extracomment>
        <translation>連線失敗</translation>
    </message>
</context>
</TS>
