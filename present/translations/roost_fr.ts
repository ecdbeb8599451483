<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
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
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Profile</source>
        <extracomment>Stands for the name of a profile until the name is known.</extracomment>
        <translation>Profil</translation>
    </message>
    <message>
        <source>Untitled post</source>
        <extracomment>Stands for the words of a post that has none.</extracomment>
        <translation>Publication sans titre</translation>
    </message>
    <message>
        <source>Today</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>Aujourd’hui</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>Demain</translation>
    </message>
    <message numerus="yes">
        <source>%lld scheduled</source>
        <extracomment>How many posts wait to be published.</extracomment>
        <translation>
            <numerusform>%lld programmée</numerusform>
            <numerusform>%lld programmées</numerusform>
        </translation>
    </message>
    <message>
        <source>Brisken Roost could not be reached. Check your connection and try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>Impossible de joindre Brisken Roost. Vérifiez votre connexion et réessayez.</translation>
    </message>
    <message>
        <source>Roost did not allow this connection. Try signing in again.</source>
        <extracomment>Error message: the service refused.</extracomment>
        <translation>Roost n’a pas autorisé cette connexion. Essayez de vous reconnecter.</translation>
    </message>
    <message>
        <source>The sign-in did not complete safely, so nothing was saved. Try again.</source>
        <extracomment>Error message: the answer could not be trusted, so it was dropped.</extracomment>
        <translation>La connexion n’a pas abouti en toute sécurité&#x202f;: rien n’a été enregistré. Réessayez.</translation>
    </message>
    <message>
        <source>Something went wrong. Try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>Une erreur s’est produite. Réessayez.</translation>
    </message>
    <message>
        <source>Move Brisken Roost to Applications first</source>
        <extracomment>Title of an alert. &quot;Applications&quot; is the folder, as the system names it.</extracomment>
        <translation>Placez d’abord Brisken Roost dans le dossier Applications</translation>
    </message>
    <message>
        <source>Brisken Roost is not in the Applications folder yet, so it cannot update itself or open at login. Drag it there, eject the disk image if there is one, and open it from there.</source>
        <extracomment>Body of that alert.</extracomment>
        <translation>Brisken Roost ne se trouve pas encore dans le dossier Applications et ne peut donc ni se mettre à jour, ni se lancer à l’ouverture de session. Faites glisser l’app dans ce dossier, éjectez l’image disque s’il y en a une, puis ouvrez l’app depuis ce dossier.</translation>
    </message>
    <message>
        <source>Show Applications</source>
        <extracomment>Button of that alert: opens the folder.</extracomment>
        <translation>Afficher Applications</translation>
    </message>
    <message>
        <source>Not now</source>
        <extracomment>Button of that alert: closes it.</extracomment>
        <translation>Pas maintenant</translation>
    </message>
    <message>
        <source>macOS wants your approval in System Settings, Login Items.</source>
        <extracomment>Beside the switch &quot;Open Brisken Roost at login&quot;. The places are named as macOS names them.</extracomment>
        <translation>macOS demande votre accord dans Réglages Système, section Ouverture.</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <extracomment>Button beside that text.</extracomment>
        <translation>Ouvrir Réglages Système</translation>
    </message>
    <message>
        <source>A post passed %@ views</source>
        <extracomment>Title. %@ is a short number: 1K, 10K or 100K as the language writes it.</extracomment>
        <translation>Une publication a dépassé les %@ vues</translation>
    </message>
    <message>
        <source>New best post of the week</source>
        <extracomment>Title.</extracomment>
        <translation>Nouvelle meilleure publication de la semaine</translation>
    </message>
    <message>
        <source>Views: %@</source>
        <extracomment>Part of a line, after the text of a post. %@ is a short number.</extracomment>
        <translation>Vues&#x202f;: %@</translation>
    </message>
    <message>
        <source>Post went out</source>
        <extracomment>Title: a scheduled post was published.</extracomment>
        <translation>Publication mise en ligne</translation>
    </message>
    <message>
        <source>A post did not go out</source>
        <extracomment>Title, and the switch for it: a scheduled post could not be published.</extracomment>
        <translation>Une publication n’a pas été mise en ligne</translation>
    </message>
    <message>
        <source>Open Brisken Roost to see why.</source>
        <extracomment>Body, under &quot;A post did not go out&quot;.</extracomment>
        <translation>Ouvrez Brisken Roost pour savoir pourquoi.</translation>
    </message>
    <message>
        <source>New followers: %@</source>
        <extracomment>Title. %@ is a number with its sign, such as +12.</extracomment>
        <translation>Nouveaux abonnés&#x202f;: %@</translation>
    </message>
    <message>
        <source>Total: %@</source>
        <extracomment>Body, under &quot;New followers&quot;: how many there are now. %@ is a short number.</extracomment>
        <translation>Total&#x202f;: %@</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button under a notification: opens the page that it is about.</extracomment>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Version %@ is available.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>La version %@ est disponible.</translation>
    </message>
    <message>
        <source>Version %@ is ready to install.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>La version %@ est prête à être installée.</translation>
    </message>
    <message>
        <source>Restart to update</source>
        <extracomment>Button: the program, not the computer, starts again.</extracomment>
        <translation>Relancer pour mettre à jour</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <extracomment>Button.</extracomment>
        <translation>Rechercher les mises à jour</translation>
    </message>
    <message>
        <source>Brisken Roost looks for updates by itself, twice a day.</source>
        <extracomment>Explanation beside &quot;Check for updates&quot;.</extracomment>
        <translation>Brisken Roost recherche lui-même les mises à jour, deux fois par jour.</translation>
    </message>
    <message>
        <source>Connect Brisken Roost</source>
        <extracomment>Heading of the card that nobody has signed in on.</extracomment>
        <translation>Connecter Brisken Roost</translation>
    </message>
    <message>
        <source>Sign in once. Brisken Roost only reads your numbers and never publishes from this app.</source>
        <extracomment>Text of that card.</extracomment>
        <translation>Connectez-vous une seule fois. Brisken Roost se contente de lire vos chiffres et ne publie jamais rien depuis cette app.</translation>
    </message>
    <message>
        <source>Signed out</source>
        <extracomment>State of a profile.</extracomment>
        <translation>Déconnecté</translation>
    </message>
    <message>
        <source>Updated %@</source>
        <extracomment>State of a profile. %@ is an age: &quot;now&quot; or &quot;5 min. ago&quot; as the language says it.</extracomment>
        <translation>Actualisé %@</translation>
    </message>
    <message>
        <source>Getting your numbers…</source>
        <extracomment>State of a profile, and heading of a widget, before the first numbers.</extracomment>
        <translation>Récupération de vos chiffres…</translation>
    </message>
    <message>
        <source>Agents &amp; access</source>
        <extracomment>Menu entry: a page of the web app, about who may use the profile.</extracomment>
        <translation>Agents et accès</translation>
    </message>
    <message>
        <source>Your numbers, on the desktop.</source>
        <extracomment>Under the heading &quot;Brisken Roost&quot;.</extracomment>
        <translation>Vos chiffres, sur le bureau.</translation>
    </message>
    <message>
        <source>Sign in with your Brisken Roost account. A browser window opens: choose the profile and allow read-only access. Nothing is ever published from this app.</source>
        <extracomment>Above the button &quot;Sign in with Brisken Roost&quot;.</extracomment>
        <translation>Connectez-vous avec votre compte Brisken Roost. Une fenêtre de navigateur s’ouvre&#x202f;: choisissez le profil et autorisez l’accès en lecture seule. Rien n’est jamais publié depuis cette app.</translation>
    </message>
    <message>
        <source>Sign in with Brisken Roost</source>
        <extracomment>Button.</extracomment>
        <translation>Se connecter avec Brisken Roost</translation>
    </message>
    <message>
        <source>Remove</source>
        <extracomment>Button beside a profile: forget it here.</extracomment>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>Remove only stops this app. To end the connection for good, use Agents &amp; access in Roost.</source>
        <extracomment>Note about the button &quot;Remove&quot;. Holds the exact words of &quot;Agents &amp; access&quot;, which become a link.</extracomment>
        <translation>«&#x202f;Retirer&#x202f;» ne concerne que cette app. Pour mettre définitivement fin à la connexion, utilisez «&#x202f;Agents et accès&#x202f;» dans Roost.</translation>
    </message>
    <message>
        <source>Add another profile</source>
        <extracomment>Button.</extracomment>
        <translation>Ajouter un autre profil</translation>
    </message>
    <message>
        <source>Open Brisken Roost at login</source>
        <extracomment>Switch.</extracomment>
        <translation>Lancer Brisken Roost à l’ouverture de session</translation>
    </message>
    <message>
        <source>Numbers refresh every 5 minutes while the app is open.</source>
        <extracomment>Note.</extracomment>
        <translation>Les chiffres sont actualisés toutes les 5 minutes tant que l’app est ouverte.</translation>
    </message>
    <message>
        <source>A post passes 1K, 10K or 100K views</source>
        <extracomment>Switch of a notification. 1K is a thousand.</extracomment>
        <translation>Une publication dépasse les 1&#xa0;k, 10&#xa0;k ou 100&#xa0;k vues</translation>
    </message>
    <message>
        <source>A new best post of the week</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Une nouvelle meilleure publication de la semaine</translation>
    </message>
    <message>
        <source>A scheduled post went out</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Une publication programmée a été mise en ligne</translation>
    </message>
    <message>
        <source>New followers</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Nouveaux abonnés</translation>
    </message>
    <message>
        <source>Right-click an empty spot on the desktop.</source>
        <extracomment>How to add a widget, first step.</extracomment>
        <translation>Faites un clic droit sur une zone vide du bureau.</translation>
    </message>
    <message>
        <source>Choose Edit Widgets.</source>
        <extracomment>How to add a widget, second step. &quot;Edit Widgets&quot; as macOS names it.</extracomment>
        <translation>Choisissez «&#x202f;Modifier les widgets&#x202f;».</translation>
    </message>
    <message>
        <source>Search for “Brisken Roost” and drag a widget out.</source>
        <extracomment>How to add a widget, third step.</extracomment>
        <translation>Recherchez «&#x202f;Brisken Roost&#x202f;» et faites glisser un widget.</translation>
    </message>
    <message>
        <source>Preview with sample numbers.</source>
        <extracomment>Caption over pictures of widgets.</extracomment>
        <translation>Aperçu avec des chiffres d’exemple.</translation>
    </message>
    <message>
        <source>Widgets need macOS 14 Sonoma or later.</source>
        <extracomment>Note.</extracomment>
        <translation>Les widgets nécessitent macOS 14 Sonoma ou une version ultérieure.</translation>
    </message>
    <message>
        <source>This build is not signed with the shared folder, so widgets cannot read its numbers. Install a signed build.</source>
        <extracomment>Warning, for people who built the program themselves. &quot;Signed&quot; as with a certificate.</extracomment>
        <translation>Cette version n’est pas signée pour le dossier partagé, les widgets ne peuvent donc pas lire ses chiffres. Installez une version signée.</translation>
    </message>
    <message>
        <source>Brisken Roost for Mac only reads your numbers. It publishes nothing, has no analytics, and contacts nothing but Roost.</source>
        <extracomment>At the bottom of the settings, above the version.</extracomment>
        <translation>Brisken Roost pour Mac ne fait que lire vos chiffres. L’app ne publie rien, ne contient aucun outil d’analyse et ne contacte que Roost.</translation>
    </message>
    <message>
        <source>This takes a few seconds the first time.</source>
        <extracomment>Under &quot;Getting your numbers…&quot;.</extracomment>
        <translation>La première fois, cela prend quelques secondes.</translation>
    </message>
    <message>
        <source>Open Brisken Roost to connect</source>
        <extracomment>Heading of a widget that nobody has signed in for.</extracomment>
        <translation>Ouvrez Brisken Roost pour vous connecter</translation>
    </message>
    <message>
        <source>Sign in once and your numbers will appear here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>Connectez-vous une fois et vos chiffres apparaîtront ici.</translation>
    </message>
    <message>
        <source>No numbers yet</source>
        <extracomment>Heading.</extracomment>
        <translation>Pas encore de chiffres</translation>
    </message>
    <message>
        <source>Numbers show up here once your posts start reporting.</source>
        <extracomment>Text under that heading. A post reports when its network tells numbers.</extracomment>
        <translation>Les chiffres s’afficheront ici dès que vos publications en fourniront.</translation>
    </message>
    <message>
        <source>Nothing scheduled</source>
        <extracomment>Heading: no post waits to be published.</extracomment>
        <translation>Rien de programmé</translation>
    </message>
    <message>
        <source>Schedule a post in Brisken Roost and it shows up here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>Programmez une publication dans Brisken Roost et elle s’affichera ici.</translation>
    </message>
    <message numerus="yes">
        <source>Failed: %lld</source>
        <extracomment>How many posts could not be published.</extracomment>
        <translation>
            <numerusform>Échec&#x202f;: %lld</numerusform>
            <numerusform>Échecs&#x202f;: %lld</numerusform>
        </translation>
    </message>
    <message>
        <source>Best post</source>
        <extracomment>Heading over one post.</extracomment>
        <translation>Meilleure publication</translation>
    </message>
    <message>
        <source>Followers</source>
        <extracomment>Heading over a number.</extracomment>
        <translation>Abonnés</translation>
    </message>
</context>
</TS>
