<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it">
<context>
    <name>Roost</name>
    <message>
        <source>Brisken Roost</source>
        <extracomment>The name of the program: a window title and a heading. Stays as it is.</extracomment>
        <translation>Brisken Roost</translation>
    </message>
    <message>
        <source>Refresh</source>
        <extracomment>Button: fetch the numbers now. Not to be mistaken for the updates of the program.</extracomment>
        <translation>Aggiorna i numeri</translation>
    </message>
    <message>
        <source>Profile</source>
        <extracomment>Stands for the name of a profile until the name is known.</extracomment>
        <translation>Profilo</translation>
    </message>
    <message>
        <source>Untitled post</source>
        <extracomment>Stands for the words of a post that has none.</extracomment>
        <translation>Post senza titolo</translation>
    </message>
    <message>
        <source>Today</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>Oggi</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>Domani</translation>
    </message>
    <message numerus="yes">
        <source>%lld scheduled</source>
        <extracomment>How many posts wait to be published.</extracomment>
        <translation>
            <numerusform>%lld programmato</numerusform>
            <numerusform>%lld programmati</numerusform>
        </translation>
    </message>
    <message>
        <source>Brisken Roost could not be reached. Check your connection and try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>Impossibile contattare Brisken Roost. Controlla la connessione e riprova.</translation>
    </message>
    <message>
        <source>Roost did not allow this connection. Try signing in again.</source>
        <extracomment>Error message: the service refused.</extracomment>
        <translation>Roost non ha consentito questa connessione. Prova ad accedere di nuovo.</translation>
    </message>
    <message>
        <source>The sign-in did not complete safely, so nothing was saved. Try again.</source>
        <extracomment>Error message: the answer could not be trusted, so it was dropped.</extracomment>
        <translation>L’accesso non si è concluso in modo sicuro, quindi non è stato salvato nulla. Riprova.</translation>
    </message>
    <message>
        <source>Something went wrong. Try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>Si è verificato un problema. Riprova.</translation>
    </message>
    <message>
        <source>Move Brisken Roost to Applications first</source>
        <extracomment>Title of an alert. &quot;Applications&quot; is the folder, as the system names it.</extracomment>
        <translation>Sposta prima Brisken Roost nella cartella Applicazioni</translation>
    </message>
    <message>
        <source>Brisken Roost is not in the Applications folder yet, so it cannot update itself or open at login. Drag it there, eject the disk image if there is one, and open it from there.</source>
        <extracomment>Body of that alert.</extracomment>
        <translation>Brisken Roost non è ancora nella cartella Applicazioni, quindi non può aggiornarsi né aprirsi al login. Trascinalo in quella cartella, espelli l’eventuale immagine disco e aprilo da lì.</translation>
    </message>
    <message>
        <source>Show Applications</source>
        <extracomment>Button of that alert: opens the folder.</extracomment>
        <translation>Mostra Applicazioni</translation>
    </message>
    <message>
        <source>Not now</source>
        <extracomment>Button of that alert: closes it.</extracomment>
        <translation>Non ora</translation>
    </message>
    <message>
        <source>macOS wants your approval in System Settings, Login Items.</source>
        <extracomment>Beside the switch &quot;Open Brisken Roost at login&quot;. The places are named as macOS names them.</extracomment>
        <translation>macOS richiede la tua approvazione in Impostazioni di Sistema, Elementi login.</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <extracomment>Button beside that text.</extracomment>
        <translation>Apri Impostazioni di Sistema</translation>
    </message>
    <message>
        <source>A post passed %@ views</source>
        <extracomment>Title. %@ is a short number: 1K, 10K or 100K as the language writes it.</extracomment>
        <translation>Un post ha superato le %@ visualizzazioni</translation>
    </message>
    <message>
        <source>New best post of the week</source>
        <extracomment>Title.</extracomment>
        <translation>Nuovo miglior post della settimana</translation>
    </message>
    <message>
        <source>Views: %@</source>
        <extracomment>Part of a line, after the text of a post. %@ is a short number.</extracomment>
        <translation>Visualizzazioni: %@</translation>
    </message>
    <message>
        <source>Post went out</source>
        <extracomment>Title: a scheduled post was published.</extracomment>
        <translation>Post pubblicato</translation>
    </message>
    <message>
        <source>A post did not go out</source>
        <extracomment>Title, and the switch for it: a scheduled post could not be published.</extracomment>
        <translation>Un post non è stato pubblicato</translation>
    </message>
    <message>
        <source>Open Brisken Roost to see why.</source>
        <extracomment>Body, under &quot;A post did not go out&quot;.</extracomment>
        <translation>Apri Brisken Roost per scoprire il motivo.</translation>
    </message>
    <message>
        <source>New followers: %@</source>
        <extracomment>Title. %@ is a number with its sign, such as +12.</extracomment>
        <translation>Nuovi follower: %@</translation>
    </message>
    <message>
        <source>Total: %@</source>
        <extracomment>Body, under &quot;New followers&quot;: how many there are now. %@ is a short number.</extracomment>
        <translation>Totale: %@</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button under a notification: opens the page that it is about.</extracomment>
        <translation>Apri</translation>
    </message>
    <message>
        <source>Version %@ is available.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>È disponibile la versione %@.</translation>
    </message>
    <message>
        <source>Version %@ is ready to install.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>La versione %@ è pronta per l’installazione.</translation>
    </message>
    <message>
        <source>Restart to update</source>
        <extracomment>Button: the program, not the computer, starts again.</extracomment>
        <translation>Riavvia per aggiornare</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <extracomment>Button.</extracomment>
        <translation>Cerca aggiornamenti</translation>
    </message>
    <message>
        <source>Brisken Roost looks for updates by itself, twice a day.</source>
        <extracomment>Explanation beside &quot;Check for updates&quot;.</extracomment>
        <translation>Brisken Roost cerca gli aggiornamenti da solo, due volte al giorno.</translation>
    </message>
    <message>
        <source>Connect Brisken Roost</source>
        <extracomment>Heading of the card that nobody has signed in on.</extracomment>
        <translation>Collega Brisken Roost</translation>
    </message>
    <message>
        <source>Sign in once. Brisken Roost only reads your numbers and never publishes from this app.</source>
        <extracomment>Text of that card.</extracomment>
        <translation>Accedi una sola volta. Brisken Roost legge soltanto i tuoi numeri e da questa app non pubblica mai nulla.</translation>
    </message>
    <message>
        <source>Signed out</source>
        <extracomment>State of a profile.</extracomment>
        <translation>Disconnesso</translation>
    </message>
    <message>
        <source>Updated %@</source>
        <extracomment>State of a profile. %@ is an age: &quot;now&quot; or &quot;5 min. ago&quot; as the language says it.</extracomment>
        <translation>Aggiornato %@</translation>
    </message>
    <message>
        <source>Getting your numbers…</source>
        <extracomment>State of a profile, and heading of a widget, before the first numbers.</extracomment>
        <translation>Recupero dei tuoi numeri…</translation>
    </message>
    <message>
        <source>Agents &amp; access</source>
        <extracomment>Menu entry: a page of the web app, about who may use the profile.</extracomment>
        <translation>Agenti e accesso</translation>
    </message>
    <message>
        <source>Your numbers, on the desktop.</source>
        <extracomment>Under the heading &quot;Brisken Roost&quot;.</extracomment>
        <translation>I tuoi numeri, sulla scrivania.</translation>
    </message>
    <message>
        <source>Sign in with your Brisken Roost account. A browser window opens: choose the profile and allow read-only access. Nothing is ever published from this app.</source>
        <extracomment>Above the button &quot;Sign in with Brisken Roost&quot;.</extracomment>
        <translation>Accedi con il tuo account Brisken Roost. Si apre una finestra del browser: scegli il profilo e consenti l’accesso in sola lettura. Da questa app non viene mai pubblicato nulla.</translation>
    </message>
    <message>
        <source>Sign in with Brisken Roost</source>
        <extracomment>Button.</extracomment>
        <translation>Accedi con Brisken Roost</translation>
    </message>
    <message>
        <source>Remove</source>
        <extracomment>Button beside a profile: forget it here.</extracomment>
        <translation>Rimuovi</translation>
    </message>
    <message>
        <source>Remove only stops this app. To end the connection for good, use Agents &amp; access in Roost.</source>
        <extracomment>Note about the button &quot;Remove&quot;. Holds the exact words of &quot;Agents &amp; access&quot;, which become a link.</extracomment>
        <translation>“Rimuovi” riguarda solo questa app. Per chiudere definitivamente la connessione, usa “Agenti e accesso” in Roost.</translation>
    </message>
    <message>
        <source>Add another profile</source>
        <extracomment>Button.</extracomment>
        <translation>Aggiungi un altro profilo</translation>
    </message>
    <message>
        <source>Open Brisken Roost at login</source>
        <extracomment>Switch.</extracomment>
        <translation>Apri Brisken Roost al login</translation>
    </message>
    <message>
        <source>Numbers refresh every 5 minutes while the app is open.</source>
        <extracomment>Note.</extracomment>
        <translation>I numeri si aggiornano ogni 5 minuti finché l’app è aperta.</translation>
    </message>
    <message>
        <source>A post passes 1K, 10K or 100K views</source>
        <extracomment>Switch of a notification. 1K is a thousand.</extracomment>
        <translation>Un post supera le 1000, 10.000 o 100.000 visualizzazioni</translation>
    </message>
    <message>
        <source>A new best post of the week</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Un nuovo miglior post della settimana</translation>
    </message>
    <message>
        <source>A scheduled post went out</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Un post programmato è stato pubblicato</translation>
    </message>
    <message>
        <source>New followers</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Nuovi follower</translation>
    </message>
    <message>
        <source>Right-click an empty spot on the desktop.</source>
        <extracomment>How to add a widget, first step.</extracomment>
        <translation>Fai clic con il tasto destro su un punto vuoto della scrivania.</translation>
    </message>
    <message>
        <source>Choose Edit Widgets.</source>
        <extracomment>How to add a widget, second step. &quot;Edit Widgets&quot; as macOS names it.</extracomment>
        <translation>Scegli “Modifica widget”.</translation>
    </message>
    <message>
        <source>Search for “Brisken Roost” and drag a widget out.</source>
        <extracomment>How to add a widget, third step.</extracomment>
        <translation>Cerca “Brisken Roost” e trascina fuori un widget.</translation>
    </message>
    <message>
        <source>Preview with sample numbers.</source>
        <extracomment>Caption over pictures of widgets.</extracomment>
        <translation>Anteprima con numeri di esempio.</translation>
    </message>
    <message>
        <source>Widgets need macOS 14 Sonoma or later.</source>
        <extracomment>Note.</extracomment>
        <translation>I widget richiedono macOS 14 Sonoma o versioni successive.</translation>
    </message>
    <message>
        <source>This build is not signed with the shared folder, so widgets cannot read its numbers. Install a signed build.</source>
        <extracomment>Warning, for people who built the program themselves. &quot;Signed&quot; as with a certificate.</extracomment>
        <translation>Questa build non è firmata per la cartella condivisa, quindi i widget non possono leggerne i numeri. Installa una build firmata.</translation>
    </message>
    <message>
        <source>Brisken Roost for Mac only reads your numbers. It publishes nothing, has no analytics, and contacts nothing but Roost.</source>
        <extracomment>At the bottom of the settings, above the version.</extracomment>
        <translation>Brisken Roost per Mac legge soltanto i tuoi numeri. Non pubblica nulla, non contiene strumenti di analisi e non contatta altro che Roost.</translation>
    </message>
    <message>
        <source>This takes a few seconds the first time.</source>
        <extracomment>Under &quot;Getting your numbers…&quot;.</extracomment>
        <translation>La prima volta ci vuole qualche secondo.</translation>
    </message>
    <message>
        <source>Open Brisken Roost to connect</source>
        <extracomment>Heading of a widget that nobody has signed in for.</extracomment>
        <translation>Apri Brisken Roost per collegarti</translation>
    </message>
    <message>
        <source>Sign in once and your numbers will appear here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>Accedi una volta e i tuoi numeri appariranno qui.</translation>
    </message>
    <message>
        <source>No numbers yet</source>
        <extracomment>Heading.</extracomment>
        <translation>Ancora nessun numero</translation>
    </message>
    <message>
        <source>Numbers show up here once your posts start reporting.</source>
        <extracomment>Text under that heading. A post reports when its network tells numbers.</extracomment>
        <translation>I numeri appariranno qui quando i tuoi post inizieranno a generarli.</translation>
    </message>
    <message>
        <source>Nothing scheduled</source>
        <extracomment>Heading: no post waits to be published.</extracomment>
        <translation>Nessun post programmato</translation>
    </message>
    <message>
        <source>Schedule a post in Brisken Roost and it shows up here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>Programma un post in Brisken Roost e lo vedrai qui.</translation>
    </message>
    <message numerus="yes">
        <source>Failed: %lld</source>
        <extracomment>How many posts could not be published.</extracomment>
        <translation>
            <numerusform>Non riuscito: %lld</numerusform>
            <numerusform>Non riusciti: %lld</numerusform>
        </translation>
    </message>
    <message>
        <source>Best post</source>
        <extracomment>Heading over one post.</extracomment>
        <translation>Miglior post</translation>
    </message>
    <message>
        <source>Followers</source>
        <extracomment>Heading over a number.</extracomment>
        <translation>Follower</translation>
    </message>
</context>
</TS>
