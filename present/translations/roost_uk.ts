<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="uk">
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
        <translation>Оновити показники</translation>
    </message>
    <message>
        <source>Profile</source>
        <extracomment>Stands for the name of a profile until the name is known.</extracomment>
        <translation>Профіль</translation>
    </message>
    <message>
        <source>Untitled post</source>
        <extracomment>Stands for the words of a post that has none.</extracomment>
        <translation>Допис без назви</translation>
    </message>
    <message>
        <source>Today</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>Сьогодні</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>Завтра</translation>
    </message>
    <message numerus="yes">
        <source>%lld scheduled</source>
        <extracomment>How many posts wait to be published.</extracomment>
        <translation>
            <numerusform>%lld запланований</numerusform>
            <numerusform>%lld заплановані</numerusform>
            <numerusform>%lld запланованих</numerusform>
        </translation>
    </message>
    <message>
        <source>Brisken Roost could not be reached. Check your connection and try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>Не вдалося з’єднатися з Brisken Roost. Перевірте з’єднання та спробуйте ще раз.</translation>
    </message>
    <message>
        <source>Roost did not allow this connection. Try signing in again.</source>
        <extracomment>Error message: the service refused.</extracomment>
        <translation>Roost не дозволив цього з’єднання. Спробуйте ввійти ще раз.</translation>
    </message>
    <message>
        <source>The sign-in did not complete safely, so nothing was saved. Try again.</source>
        <extracomment>Error message: the answer could not be trusted, so it was dropped.</extracomment>
        <translation>Вхід не завершився безпечно, тому нічого не збережено. Спробуйте ще раз.</translation>
    </message>
    <message>
        <source>Something went wrong. Try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>Щось пішло не так. Спробуйте ще раз.</translation>
    </message>
    <message>
        <source>Move Brisken Roost to Applications first</source>
        <extracomment>Title of an alert. &quot;Applications&quot; is the folder, as the system names it.</extracomment>
        <translation>Спершу перемістіть Brisken Roost до папки «Програми»</translation>
    </message>
    <message>
        <source>Brisken Roost is not in the Applications folder yet, so it cannot update itself or open at login. Drag it there, eject the disk image if there is one, and open it from there.</source>
        <extracomment>Body of that alert.</extracomment>
        <translation>Brisken Roost ще не в папці «Програми», тому не може оновлюватися й відкриватися під час входу. Перетягніть програму туди, витягніть образ диска, якщо він є, і відкрийте її звідти.</translation>
    </message>
    <message>
        <source>Show Applications</source>
        <extracomment>Button of that alert: opens the folder.</extracomment>
        <translation>Показати «Програми»</translation>
    </message>
    <message>
        <source>Not now</source>
        <extracomment>Button of that alert: closes it.</extracomment>
        <translation>Не зараз</translation>
    </message>
    <message>
        <source>macOS wants your approval in System Settings, Login Items.</source>
        <extracomment>Beside the switch &quot;Open Brisken Roost at login&quot;. The places are named as macOS names them.</extracomment>
        <translation>macOS потребує вашого дозволу в Системних параметрах, розділ «Елементи входу».</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <extracomment>Button beside that text.</extracomment>
        <translation>Відкрити Системні параметри</translation>
    </message>
    <message>
        <source>A post passed %@ views</source>
        <extracomment>Title. %@ is a short number: 1K, 10K or 100K as the language writes it.</extracomment>
        <translation>Допис набрав понад %@ переглядів</translation>
    </message>
    <message>
        <source>New best post of the week</source>
        <extracomment>Title.</extracomment>
        <translation>Новий найкращий допис тижня</translation>
    </message>
    <message>
        <source>Views: %@</source>
        <extracomment>Part of a line, after the text of a post. %@ is a short number.</extracomment>
        <translation>Перегляди: %@</translation>
    </message>
    <message>
        <source>Post went out</source>
        <extracomment>Title: a scheduled post was published.</extracomment>
        <translation>Допис опубліковано</translation>
    </message>
    <message>
        <source>A post did not go out</source>
        <extracomment>Title, and the switch for it: a scheduled post could not be published.</extracomment>
        <translation>Допис не опубліковано</translation>
    </message>
    <message>
        <source>Open Brisken Roost to see why.</source>
        <extracomment>Body, under &quot;A post did not go out&quot;.</extracomment>
        <translation>Відкрийте Brisken Roost, щоб дізнатися чому.</translation>
    </message>
    <message>
        <source>New followers: %@</source>
        <extracomment>Title. %@ is a number with its sign, such as +12.</extracomment>
        <translation>Нові підписники: %@</translation>
    </message>
    <message>
        <source>Total: %@</source>
        <extracomment>Body, under &quot;New followers&quot;: how many there are now. %@ is a short number.</extracomment>
        <translation>Усього: %@</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button under a notification: opens the page that it is about.</extracomment>
        <translation>Відкрити</translation>
    </message>
    <message>
        <source>Version %@ is available.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>Доступна версія %@.</translation>
    </message>
    <message>
        <source>Version %@ is ready to install.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>Версія %@ готова до встановлення.</translation>
    </message>
    <message>
        <source>Restart to update</source>
        <extracomment>Button: the program, not the computer, starts again.</extracomment>
        <translation>Перезапустити й оновити</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <extracomment>Button.</extracomment>
        <translation>Перевірити оновлення</translation>
    </message>
    <message>
        <source>Brisken Roost looks for updates by itself, twice a day.</source>
        <extracomment>Explanation beside &quot;Check for updates&quot;.</extracomment>
        <translation>Brisken Roost сам шукає оновлення двічі на день.</translation>
    </message>
    <message>
        <source>Connect Brisken Roost</source>
        <extracomment>Heading of the card that nobody has signed in on.</extracomment>
        <translation>Під’єднати Brisken Roost</translation>
    </message>
    <message>
        <source>Sign in once. Brisken Roost only reads your numbers and never publishes from this app.</source>
        <extracomment>Text of that card.</extracomment>
        <translation>Увійдіть один раз. Brisken Roost лише читає ваші показники й ніколи нічого не публікує з цієї програми.</translation>
    </message>
    <message>
        <source>Signed out</source>
        <extracomment>State of a profile.</extracomment>
        <translation>Вхід не виконано</translation>
    </message>
    <message>
        <source>Updated %@</source>
        <extracomment>State of a profile. %@ is an age: &quot;now&quot; or &quot;5 min. ago&quot; as the language says it.</extracomment>
        <translation>Оновлено %@</translation>
    </message>
    <message>
        <source>Getting your numbers…</source>
        <extracomment>State of a profile, and heading of a widget, before the first numbers.</extracomment>
        <translation>Отримуємо ваші показники…</translation>
    </message>
    <message>
        <source>Agents &amp; access</source>
        <extracomment>Menu entry: a page of the web app, about who may use the profile.</extracomment>
        <translation>Агенти й доступ</translation>
    </message>
    <message>
        <source>Your numbers, on the desktop.</source>
        <extracomment>Under the heading &quot;Brisken Roost&quot;.</extracomment>
        <translation>Ваші показники&#xa0;— на робочому столі.</translation>
    </message>
    <message>
        <source>Sign in with your Brisken Roost account. A browser window opens: choose the profile and allow read-only access. Nothing is ever published from this app.</source>
        <extracomment>Above the button &quot;Sign in with Brisken Roost&quot;.</extracomment>
        <translation>Увійдіть в обліковий запис Brisken Roost. Відкриється вікно браузера: виберіть профіль і дозвольте доступ лише для читання. З цієї програми ніколи нічого не публікується.</translation>
    </message>
    <message>
        <source>Sign in with Brisken Roost</source>
        <extracomment>Button.</extracomment>
        <translation>Увійти через Brisken Roost</translation>
    </message>
    <message>
        <source>Remove</source>
        <extracomment>Button beside a profile: forget it here.</extracomment>
        <translation>Вилучити</translation>
    </message>
    <message>
        <source>Remove only stops this app. To end the connection for good, use Agents &amp; access in Roost.</source>
        <extracomment>Note about the button &quot;Remove&quot;. Holds the exact words of &quot;Agents &amp; access&quot;, which become a link.</extracomment>
        <translation>«Вилучити» стосується лише цієї програми. Щоб остаточно припинити з’єднання, скористайтеся сторінкою «Агенти й доступ» у Roost.</translation>
    </message>
    <message>
        <source>Add another profile</source>
        <extracomment>Button.</extracomment>
        <translation>Додати інший профіль</translation>
    </message>
    <message>
        <source>Open Brisken Roost at login</source>
        <extracomment>Switch.</extracomment>
        <translation>Відкривати Brisken Roost під час входу</translation>
    </message>
    <message>
        <source>Numbers refresh every 5 minutes while the app is open.</source>
        <extracomment>Note.</extracomment>
        <translation>Показники оновлюються кожні 5 хвилин, поки програму відкрито.</translation>
    </message>
    <message>
        <source>A post passes 1K, 10K or 100K views</source>
        <extracomment>Switch of a notification. 1K is a thousand.</extracomment>
        <translation>Допис набирає понад 1&#xa0;тис., 10&#xa0;тис. або 100&#xa0;тис. переглядів</translation>
    </message>
    <message>
        <source>A new best post of the week</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Новий найкращий допис тижня</translation>
    </message>
    <message>
        <source>A scheduled post went out</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Запланований допис опубліковано</translation>
    </message>
    <message>
        <source>New followers</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Нові підписники</translation>
    </message>
    <message>
        <source>Right-click an empty spot on the desktop.</source>
        <extracomment>How to add a widget, first step.</extracomment>
        <translation>Клацніть правою кнопкою миші вільне місце на робочому столі.</translation>
    </message>
    <message>
        <source>Choose Edit Widgets.</source>
        <extracomment>How to add a widget, second step. &quot;Edit Widgets&quot; as macOS names it.</extracomment>
        <translation>Виберіть «Редагувати віджети».</translation>
    </message>
    <message>
        <source>Search for “Brisken Roost” and drag a widget out.</source>
        <extracomment>How to add a widget, third step.</extracomment>
        <translation>Знайдіть «Brisken Roost» і перетягніть віджет на робочий стіл.</translation>
    </message>
    <message>
        <source>Preview with sample numbers.</source>
        <extracomment>Caption over pictures of widgets.</extracomment>
        <translation>Попередній перегляд із прикладами показників.</translation>
    </message>
    <message>
        <source>Widgets need macOS 14 Sonoma or later.</source>
        <extracomment>Note.</extracomment>
        <translation>Для віджетів потрібна macOS 14 Sonoma або новіша.</translation>
    </message>
    <message>
        <source>This build is not signed with the shared folder, so widgets cannot read its numbers. Install a signed build.</source>
        <extracomment>Warning, for people who built the program themselves. &quot;Signed&quot; as with a certificate.</extracomment>
        <translation>Цю збірку не підписано для спільної папки, тому віджети не можуть читати її показники. Установіть підписану збірку.</translation>
    </message>
    <message>
        <source>Brisken Roost for Mac only reads your numbers. It publishes nothing, has no analytics, and contacts nothing but Roost.</source>
        <extracomment>At the bottom of the settings, above the version.</extracomment>
        <translation>Brisken Roost для Mac лише читає ваші показники. Програма нічого не публікує, не збирає аналітичних даних і не звертається ні до чого, крім Roost.</translation>
    </message>
    <message>
        <source>This takes a few seconds the first time.</source>
        <extracomment>Under &quot;Getting your numbers…&quot;.</extracomment>
        <translation>Першого разу це триває кілька секунд.</translation>
    </message>
    <message>
        <source>Open Brisken Roost to connect</source>
        <extracomment>Heading of a widget that nobody has signed in for.</extracomment>
        <translation>Відкрийте Brisken Roost, щоб під’єднатися</translation>
    </message>
    <message>
        <source>Sign in once and your numbers will appear here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>Увійдіть один раз, і ваші показники з’являться тут.</translation>
    </message>
    <message>
        <source>No numbers yet</source>
        <extracomment>Heading.</extracomment>
        <translation>Показників ще немає</translation>
    </message>
    <message>
        <source>Numbers show up here once your posts start reporting.</source>
        <extracomment>Text under that heading. A post reports when its network tells numbers.</extracomment>
        <translation>Показники з’являться тут, щойно ваші дописи почнуть їх набирати.</translation>
    </message>
    <message>
        <source>Nothing scheduled</source>
        <extracomment>Heading: no post waits to be published.</extracomment>
        <translation>Нічого не заплановано</translation>
    </message>
    <message>
        <source>Schedule a post in Brisken Roost and it shows up here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>Заплануйте допис у Brisken Roost&#xa0;— і він з’явиться тут.</translation>
    </message>
    <message numerus="yes">
        <source>Failed: %lld</source>
        <extracomment>How many posts could not be published.</extracomment>
        <translation>
            <numerusform>Невдалі: %lld</numerusform>
            <numerusform>Невдалі: %lld</numerusform>
            <numerusform>Невдалі: %lld</numerusform>
        </translation>
    </message>
    <message>
        <source>Best post</source>
        <extracomment>Heading over one post.</extracomment>
        <translation>Найкращий допис</translation>
    </message>
    <message>
        <source>Followers</source>
        <extracomment>Heading over a number.</extracomment>
        <translation>Підписники</translation>
    </message>
</context>
</TS>
