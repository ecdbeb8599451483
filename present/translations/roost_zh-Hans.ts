<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
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
        <translation>刷新</translation>
    </message>
    <message>
        <source>Profile</source>
        <extracomment>Stands for the name of a profile until the name is known.</extracomment>
        <translation>个人资料</translation>
    </message>
    <message>
        <source>Untitled post</source>
        <extracomment>Stands for the words of a post that has none.</extracomment>
        <translation>无标题帖子</translation>
    </message>
    <message>
        <source>Today</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>今天</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>明天</translation>
    </message>
    <message numerus="yes">
        <source>%lld scheduled</source>
        <extracomment>How many posts wait to be published.</extracomment>
        <translation>
            <numerusform>%lld 条定时帖子</numerusform>
        </translation>
    </message>
    <message>
        <source>Brisken Roost could not be reached. Check your connection and try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>无法连接 Brisken Roost。请检查网络连接，然后重试。</translation>
    </message>
    <message>
        <source>Roost did not allow this connection. Try signing in again.</source>
        <extracomment>Error message: the service refused.</extracomment>
        <translation>Roost 未允许此次连接。请尝试重新登录。</translation>
    </message>
    <message>
        <source>The sign-in did not complete safely, so nothing was saved. Try again.</source>
        <extracomment>Error message: the answer could not be trusted, so it was dropped.</extracomment>
        <translation>登录未能安全完成，因此未保存任何内容。请重试。</translation>
    </message>
    <message>
        <source>Something went wrong. Try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>出错了，请重试。</translation>
    </message>
    <message>
        <source>Move Brisken Roost to Applications first</source>
        <extracomment>Title of an alert. &quot;Applications&quot; is the folder, as the system names it.</extracomment>
        <translation>请先将 Brisken Roost 移到“应用程序”文件夹</translation>
    </message>
    <message>
        <source>Brisken Roost is not in the Applications folder yet, so it cannot update itself or open at login. Drag it there, eject the disk image if there is one, and open it from there.</source>
        <extracomment>Body of that alert.</extracomment>
        <translation>Brisken Roost 尚未在“应用程序”文件夹中，因此无法自行更新，也无法在登录时打开。请将它拖到该文件夹，推出磁盘映像（如有），然后从该文件夹中打开。</translation>
    </message>
    <message>
        <source>Show Applications</source>
        <extracomment>Button of that alert: opens the folder.</extracomment>
        <translation>显示“应用程序”</translation>
    </message>
    <message>
        <source>Not now</source>
        <extracomment>Button of that alert: closes it.</extracomment>
        <translation>以后再说</translation>
    </message>
    <message>
        <source>macOS wants your approval in System Settings, Login Items.</source>
        <extracomment>Beside the switch &quot;Open Brisken Roost at login&quot;. The places are named as macOS names them.</extracomment>
        <translation>macOS 需要你在“系统设置”的“登录项”中批准。</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <extracomment>Button beside that text.</extracomment>
        <translation>打开系统设置</translation>
    </message>
    <message>
        <source>A post passed %@ views</source>
        <extracomment>Title. %@ is a short number: 1K, 10K or 100K as the language writes it.</extracomment>
        <translation>有帖子的浏览量突破 %@</translation>
    </message>
    <message>
        <source>New best post of the week</source>
        <extracomment>Title.</extracomment>
        <translation>本周出现新的最佳帖子</translation>
    </message>
    <message>
        <source>Views: %@</source>
        <extracomment>Part of a line, after the text of a post. %@ is a short number.</extracomment>
        <translation>浏览量：%@</translation>
    </message>
    <message>
        <source>Post went out</source>
        <extracomment>Title: a scheduled post was published.</extracomment>
        <translation>帖子已发布</translation>
    </message>
    <message>
        <source>A post did not go out</source>
        <extracomment>Title, and the switch for it: a scheduled post could not be published.</extracomment>
        <translation>有帖子未能发布</translation>
    </message>
    <message>
        <source>Open Brisken Roost to see why.</source>
        <extracomment>Body, under &quot;A post did not go out&quot;.</extracomment>
        <translation>打开 Brisken Roost 查看原因。</translation>
    </message>
    <message>
        <source>New followers: %@</source>
        <extracomment>Title. %@ is a number with its sign, such as +12.</extracomment>
        <translation>新增粉丝：%@</translation>
    </message>
    <message>
        <source>Total: %@</source>
        <extracomment>Body, under &quot;New followers&quot;: how many there are now. %@ is a short number.</extracomment>
        <translation>总数：%@</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button under a notification: opens the page that it is about.</extracomment>
        <translation>打开</translation>
    </message>
    <message>
        <source>Version %@ is available.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>版本 %@ 现已可用。</translation>
    </message>
    <message>
        <source>Version %@ is ready to install.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>版本 %@ 已准备好安装。</translation>
    </message>
    <message>
        <source>Restart to update</source>
        <extracomment>Button: the program, not the computer, starts again.</extracomment>
        <translation>重新启动以更新</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <extracomment>Button.</extracomment>
        <translation>检查更新</translation>
    </message>
    <message>
        <source>Brisken Roost looks for updates by itself, twice a day.</source>
        <extracomment>Explanation beside &quot;Check for updates&quot;.</extracomment>
        <translation>Brisken Roost 每天会自动检查两次更新。</translation>
    </message>
    <message>
        <source>Connect Brisken Roost</source>
        <extracomment>Heading of the card that nobody has signed in on.</extracomment>
        <translation>连接 Brisken Roost</translation>
    </message>
    <message>
        <source>Sign in once. Brisken Roost only reads your numbers and never publishes from this app.</source>
        <extracomment>Text of that card.</extracomment>
        <translation>只需登录一次。Brisken Roost 只读取你的数据，绝不会通过此 App 发布内容。</translation>
    </message>
    <message>
        <source>Signed out</source>
        <extracomment>State of a profile.</extracomment>
        <translation>已退出登录</translation>
    </message>
    <message>
        <source>Updated %@</source>
        <extracomment>State of a profile. %@ is an age: &quot;now&quot; or &quot;5 min. ago&quot; as the language says it.</extracomment>
        <translation>更新时间：%@</translation>
    </message>
    <message>
        <source>Getting your numbers…</source>
        <extracomment>State of a profile, and heading of a widget, before the first numbers.</extracomment>
        <translation>正在获取你的数据…</translation>
    </message>
    <message>
        <source>Agents &amp; access</source>
        <extracomment>Menu entry: a page of the web app, about who may use the profile.</extracomment>
        <translation>智能体与访问权限</translation>
    </message>
    <message>
        <source>Your numbers, on the desktop.</source>
        <extracomment>Under the heading &quot;Brisken Roost&quot;.</extracomment>
        <translation>你的数据，尽在桌面。</translation>
    </message>
    <message>
        <source>Sign in with your Brisken Roost account. A browser window opens: choose the profile and allow read-only access. Nothing is ever published from this app.</source>
        <extracomment>Above the button &quot;Sign in with Brisken Roost&quot;.</extracomment>
        <translation>使用你的 Brisken Roost 账号登录。浏览器窗口打开后，请选择个人资料并允许只读访问。此 App 绝不会发布任何内容。</translation>
    </message>
    <message>
        <source>Sign in with Brisken Roost</source>
        <extracomment>Button.</extracomment>
        <translation>通过 Brisken Roost 登录</translation>
    </message>
    <message>
        <source>Remove</source>
        <extracomment>Button beside a profile: forget it here.</extracomment>
        <translation>移除</translation>
    </message>
    <message>
        <source>Remove only stops this app. To end the connection for good, use Agents &amp; access in Roost.</source>
        <extracomment>Note about the button &quot;Remove&quot;. Holds the exact words of &quot;Agents &amp; access&quot;, which become a link.</extracomment>
        <translation>“移除”只会停用此 App。要彻底终止连接，请前往 Roost 的“智能体与访问权限”。</translation>
    </message>
    <message>
        <source>Add another profile</source>
        <extracomment>Button.</extracomment>
        <translation>添加其他个人资料</translation>
    </message>
    <message>
        <source>Open Brisken Roost at login</source>
        <extracomment>Switch.</extracomment>
        <translation>登录时打开 Brisken Roost</translation>
    </message>
    <message>
        <source>Numbers refresh every 5 minutes while the app is open.</source>
        <extracomment>Note.</extracomment>
        <translation>App 打开期间，数据每 5 分钟刷新一次。</translation>
    </message>
    <message>
        <source>A post passes 1K, 10K or 100K views</source>
        <extracomment>Switch of a notification. 1K is a thousand.</extracomment>
        <translation>帖子浏览量突破 1000、1 万或 10 万</translation>
    </message>
    <message>
        <source>A new best post of the week</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>本周出现新的最佳帖子</translation>
    </message>
    <message>
        <source>A scheduled post went out</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>定时帖子已发布</translation>
    </message>
    <message>
        <source>New followers</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>新增粉丝</translation>
    </message>
    <message>
        <source>Right-click an empty spot on the desktop.</source>
        <extracomment>How to add a widget, first step.</extracomment>
        <translation>在桌面空白处点按右键。</translation>
    </message>
    <message>
        <source>Choose Edit Widgets.</source>
        <extracomment>How to add a widget, second step. &quot;Edit Widgets&quot; as macOS names it.</extracomment>
        <translation>选取“编辑小组件”。</translation>
    </message>
    <message>
        <source>Search for “Brisken Roost” and drag a widget out.</source>
        <extracomment>How to add a widget, third step.</extracomment>
        <translation>搜索“Brisken Roost”，然后将小组件拖出来。</translation>
    </message>
    <message>
        <source>Preview with sample numbers.</source>
        <extracomment>Caption over pictures of widgets.</extracomment>
        <translation>使用示例数据的预览。</translation>
    </message>
    <message>
        <source>Widgets need macOS 14 Sonoma or later.</source>
        <extracomment>Note.</extracomment>
        <translation>小组件需要 macOS 14 Sonoma 或更高版本。</translation>
    </message>
    <message>
        <source>This build is not signed with the shared folder, so widgets cannot read its numbers. Install a signed build.</source>
        <extracomment>Warning, for people who built the program themselves. &quot;Signed&quot; as with a certificate.</extracomment>
        <translation>此构建版本未针对共享文件夹签名，因此小组件无法读取其数据。请安装已签名的构建版本。</translation>
    </message>
    <message>
        <source>Brisken Roost for Mac only reads your numbers. It publishes nothing, has no analytics, and contacts nothing but Roost.</source>
        <extracomment>At the bottom of the settings, above the version.</extracomment>
        <translation>Brisken Roost for Mac 只读取你的数据。它不发布任何内容，不含分析工具，也只与 Roost 通信。</translation>
    </message>
    <message>
        <source>This takes a few seconds the first time.</source>
        <extracomment>Under &quot;Getting your numbers…&quot;.</extracomment>
        <translation>首次获取需要几秒钟。</translation>
    </message>
    <message>
        <source>Open Brisken Roost to connect</source>
        <extracomment>Heading of a widget that nobody has signed in for.</extracomment>
        <translation>打开 Brisken Roost 进行连接</translation>
    </message>
    <message>
        <source>Sign in once and your numbers will appear here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>登录一次，你的数据就会显示在这里。</translation>
    </message>
    <message>
        <source>No numbers yet</source>
        <extracomment>Heading.</extracomment>
        <translation>暂无数据</translation>
    </message>
    <message>
        <source>Numbers show up here once your posts start reporting.</source>
        <extracomment>Text under that heading. A post reports when its network tells numbers.</extracomment>
        <translation>帖子有了数据后，就会显示在这里。</translation>
    </message>
    <message>
        <source>Nothing scheduled</source>
        <extracomment>Heading: no post waits to be published.</extracomment>
        <translation>没有定时帖子</translation>
    </message>
    <message>
        <source>Schedule a post in Brisken Roost and it shows up here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>在 Brisken Roost 中设置定时帖子后，会显示在这里。</translation>
    </message>
    <message numerus="yes">
        <source>Failed: %lld</source>
        <extracomment>How many posts could not be published.</extracomment>
        <translation>
            <numerusform>失败：%lld</numerusform>
        </translation>
    </message>
    <message>
        <source>Best post</source>
        <extracomment>Heading over one post.</extracomment>
        <translation>最佳帖子</translation>
    </message>
    <message>
        <source>Followers</source>
        <extracomment>Heading over a number.</extracomment>
        <translation>粉丝</translation>
    </message>
</context>
</TS>
