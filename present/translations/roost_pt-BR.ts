<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR">
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
        <translation>Atualizar números</translation>
    </message>
    <message>
        <source>Profile</source>
        <extracomment>Stands for the name of a profile until the name is known.</extracomment>
        <translation>Perfil</translation>
    </message>
    <message>
        <source>Untitled post</source>
        <extracomment>Stands for the words of a post that has none.</extracomment>
        <translation>Post sem título</translation>
    </message>
    <message>
        <source>Today</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>Hoje</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <extracomment>The day of a scheduled post. Stands alone, before a clock time.</extracomment>
        <translation>Amanhã</translation>
    </message>
    <message numerus="yes">
        <source>%lld scheduled</source>
        <extracomment>How many posts wait to be published.</extracomment>
        <translation>
            <numerusform>%lld agendado</numerusform>
            <numerusform>%lld agendados</numerusform>
        </translation>
    </message>
    <message>
        <source>Brisken Roost could not be reached. Check your connection and try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>Não foi possível acessar o Brisken Roost. Verifique sua conexão e tente novamente.</translation>
    </message>
    <message>
        <source>Roost did not allow this connection. Try signing in again.</source>
        <extracomment>Error message: the service refused.</extracomment>
        <translation>O Roost não permitiu esta conexão. Tente fazer login novamente.</translation>
    </message>
    <message>
        <source>The sign-in did not complete safely, so nothing was saved. Try again.</source>
        <extracomment>Error message: the answer could not be trusted, so it was dropped.</extracomment>
        <translation>O login não foi concluído com segurança, por isso nada foi salvo. Tente novamente.</translation>
    </message>
    <message>
        <source>Something went wrong. Try again.</source>
        <extracomment>Error message.</extracomment>
        <translation>Algo deu errado. Tente novamente.</translation>
    </message>
    <message>
        <source>Move Brisken Roost to Applications first</source>
        <extracomment>Title of an alert. &quot;Applications&quot; is the folder, as the system names it.</extracomment>
        <translation>Mova primeiro o Brisken Roost para a pasta Aplicativos</translation>
    </message>
    <message>
        <source>Brisken Roost is not in the Applications folder yet, so it cannot update itself or open at login. Drag it there, eject the disk image if there is one, and open it from there.</source>
        <extracomment>Body of that alert.</extracomment>
        <translation>O Brisken Roost ainda não está na pasta Aplicativos, por isso não pode se atualizar nem abrir ao iniciar a sessão. Arraste-o para lá, ejete a imagem de disco, se houver, e abra-o a partir dessa pasta.</translation>
    </message>
    <message>
        <source>Show Applications</source>
        <extracomment>Button of that alert: opens the folder.</extracomment>
        <translation>Mostrar Aplicativos</translation>
    </message>
    <message>
        <source>Not now</source>
        <extracomment>Button of that alert: closes it.</extracomment>
        <translation>Agora não</translation>
    </message>
    <message>
        <source>macOS wants your approval in System Settings, Login Items.</source>
        <extracomment>Beside the switch &quot;Open Brisken Roost at login&quot;. The places are named as macOS names them.</extracomment>
        <translation>O macOS precisa da sua aprovação em Ajustes do Sistema, Itens de Início.</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <extracomment>Button beside that text.</extracomment>
        <translation>Abrir Ajustes do Sistema</translation>
    </message>
    <message>
        <source>A post passed %@ views</source>
        <extracomment>Title. %@ is a short number: 1K, 10K or 100K as the language writes it.</extracomment>
        <translation>Um post passou de %@ visualizações</translation>
    </message>
    <message>
        <source>New best post of the week</source>
        <extracomment>Title.</extracomment>
        <translation>Novo melhor post da semana</translation>
    </message>
    <message>
        <source>Views: %@</source>
        <extracomment>Part of a line, after the text of a post. %@ is a short number.</extracomment>
        <translation>Visualizações: %@</translation>
    </message>
    <message>
        <source>Post went out</source>
        <extracomment>Title: a scheduled post was published.</extracomment>
        <translation>Post publicado</translation>
    </message>
    <message>
        <source>A post did not go out</source>
        <extracomment>Title, and the switch for it: a scheduled post could not be published.</extracomment>
        <translation>Um post não foi publicado</translation>
    </message>
    <message>
        <source>Open Brisken Roost to see why.</source>
        <extracomment>Body, under &quot;A post did not go out&quot;.</extracomment>
        <translation>Abra o Brisken Roost para ver o motivo.</translation>
    </message>
    <message>
        <source>New followers: %@</source>
        <extracomment>Title. %@ is a number with its sign, such as +12.</extracomment>
        <translation>Novos seguidores: %@</translation>
    </message>
    <message>
        <source>Total: %@</source>
        <extracomment>Body, under &quot;New followers&quot;: how many there are now. %@ is a short number.</extracomment>
        <translation>Total: %@</translation>
    </message>
    <message>
        <source>Open</source>
        <extracomment>Button under a notification: opens the page that it is about.</extracomment>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>Version %@ is available.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>A versão %@ está disponível.</translation>
    </message>
    <message>
        <source>Version %@ is ready to install.</source>
        <extracomment>%@ is a version, such as 1.4.2.</extracomment>
        <translation>A versão %@ está pronta para ser instalada.</translation>
    </message>
    <message>
        <source>Restart to update</source>
        <extracomment>Button: the program, not the computer, starts again.</extracomment>
        <translation>Reiniciar para atualizar</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <extracomment>Button.</extracomment>
        <translation>Buscar atualizações</translation>
    </message>
    <message>
        <source>Brisken Roost looks for updates by itself, twice a day.</source>
        <extracomment>Explanation beside &quot;Check for updates&quot;.</extracomment>
        <translation>O Brisken Roost busca atualizações sozinho, duas vezes por dia.</translation>
    </message>
    <message>
        <source>Connect Brisken Roost</source>
        <extracomment>Heading of the card that nobody has signed in on.</extracomment>
        <translation>Conectar o Brisken Roost</translation>
    </message>
    <message>
        <source>Sign in once. Brisken Roost only reads your numbers and never publishes from this app.</source>
        <extracomment>Text of that card.</extracomment>
        <translation>Faça login uma única vez. O Brisken Roost apenas lê seus números e nunca publica nada por este app.</translation>
    </message>
    <message>
        <source>Signed out</source>
        <extracomment>State of a profile.</extracomment>
        <translation>Desconectado</translation>
    </message>
    <message>
        <source>Updated %@</source>
        <extracomment>State of a profile. %@ is an age: &quot;now&quot; or &quot;5 min. ago&quot; as the language says it.</extracomment>
        <translation>Atualizado %@</translation>
    </message>
    <message>
        <source>Getting your numbers…</source>
        <extracomment>State of a profile, and heading of a widget, before the first numbers.</extracomment>
        <translation>Buscando seus números…</translation>
    </message>
    <message>
        <source>Agents &amp; access</source>
        <extracomment>Menu entry: a page of the web app, about who may use the profile.</extracomment>
        <translation>Agentes e acesso</translation>
    </message>
    <message>
        <source>Your numbers, on the desktop.</source>
        <extracomment>Under the heading &quot;Brisken Roost&quot;.</extracomment>
        <translation>Seus números na área de trabalho.</translation>
    </message>
    <message>
        <source>Sign in with your Brisken Roost account. A browser window opens: choose the profile and allow read-only access. Nothing is ever published from this app.</source>
        <extracomment>Above the button &quot;Sign in with Brisken Roost&quot;.</extracomment>
        <translation>Faça login com a sua conta do Brisken Roost. Uma janela do navegador será aberta: escolha o perfil e permita o acesso somente leitura. Nada jamais é publicado por este app.</translation>
    </message>
    <message>
        <source>Sign in with Brisken Roost</source>
        <extracomment>Button.</extracomment>
        <translation>Fazer login com o Brisken Roost</translation>
    </message>
    <message>
        <source>Remove</source>
        <extracomment>Button beside a profile: forget it here.</extracomment>
        <translation>Remover</translation>
    </message>
    <message>
        <source>Remove only stops this app. To end the connection for good, use Agents &amp; access in Roost.</source>
        <extracomment>Note about the button &quot;Remove&quot;. Holds the exact words of &quot;Agents &amp; access&quot;, which become a link.</extracomment>
        <translation>“Remover” afeta apenas este app. Para encerrar a conexão de vez, use “Agentes e acesso” no Roost.</translation>
    </message>
    <message>
        <source>Add another profile</source>
        <extracomment>Button.</extracomment>
        <translation>Adicionar outro perfil</translation>
    </message>
    <message>
        <source>Open Brisken Roost at login</source>
        <extracomment>Switch.</extracomment>
        <translation>Abrir o Brisken Roost ao iniciar a sessão</translation>
    </message>
    <message>
        <source>Numbers refresh every 5 minutes while the app is open.</source>
        <extracomment>Note.</extracomment>
        <translation>Os números são atualizados a cada 5 minutos enquanto o app está aberto.</translation>
    </message>
    <message>
        <source>A post passes 1K, 10K or 100K views</source>
        <extracomment>Switch of a notification. 1K is a thousand.</extracomment>
        <translation>Um post passa de mil, 10&#xa0;mil ou 100&#xa0;mil visualizações</translation>
    </message>
    <message>
        <source>A new best post of the week</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Um novo melhor post da semana</translation>
    </message>
    <message>
        <source>A scheduled post went out</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Um post agendado foi publicado</translation>
    </message>
    <message>
        <source>New followers</source>
        <extracomment>Switch of a notification.</extracomment>
        <translation>Novos seguidores</translation>
    </message>
    <message>
        <source>Right-click an empty spot on the desktop.</source>
        <extracomment>How to add a widget, first step.</extracomment>
        <translation>Clique com o botão direito em um espaço vazio da área de trabalho.</translation>
    </message>
    <message>
        <source>Choose Edit Widgets.</source>
        <extracomment>How to add a widget, second step. &quot;Edit Widgets&quot; as macOS names it.</extracomment>
        <translation>Escolha “Editar Widgets”.</translation>
    </message>
    <message>
        <source>Search for “Brisken Roost” and drag a widget out.</source>
        <extracomment>How to add a widget, third step.</extracomment>
        <translation>Busque “Brisken Roost” e arraste um widget para fora.</translation>
    </message>
    <message>
        <source>Preview with sample numbers.</source>
        <extracomment>Caption over pictures of widgets.</extracomment>
        <translation>Prévia com números de exemplo.</translation>
    </message>
    <message>
        <source>Widgets need macOS 14 Sonoma or later.</source>
        <extracomment>Note.</extracomment>
        <translation>Os widgets requerem o macOS 14 Sonoma ou posterior.</translation>
    </message>
    <message>
        <source>This build is not signed with the shared folder, so widgets cannot read its numbers. Install a signed build.</source>
        <extracomment>Warning, for people who built the program themselves. &quot;Signed&quot; as with a certificate.</extracomment>
        <translation>Esta compilação não está assinada para a pasta compartilhada, por isso os widgets não podem ler seus números. Instale uma compilação assinada.</translation>
    </message>
    <message>
        <source>Brisken Roost for Mac only reads your numbers. It publishes nothing, has no analytics, and contacts nothing but Roost.</source>
        <extracomment>At the bottom of the settings, above the version.</extracomment>
        <translation>O Brisken Roost para Mac apenas lê seus números. Não publica nada, não coleta dados de uso e não se comunica com nada além do Roost.</translation>
    </message>
    <message>
        <source>This takes a few seconds the first time.</source>
        <extracomment>Under &quot;Getting your numbers…&quot;.</extracomment>
        <translation>Na primeira vez, isso leva alguns segundos.</translation>
    </message>
    <message>
        <source>Open Brisken Roost to connect</source>
        <extracomment>Heading of a widget that nobody has signed in for.</extracomment>
        <translation>Abra o Brisken Roost para conectar</translation>
    </message>
    <message>
        <source>Sign in once and your numbers will appear here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>Faça login uma vez e seus números aparecerão aqui.</translation>
    </message>
    <message>
        <source>No numbers yet</source>
        <extracomment>Heading.</extracomment>
        <translation>Ainda não há números</translation>
    </message>
    <message>
        <source>Numbers show up here once your posts start reporting.</source>
        <extracomment>Text under that heading. A post reports when its network tells numbers.</extracomment>
        <translation>Os números aparecerão aqui assim que seus posts começarem a gerá-los.</translation>
    </message>
    <message>
        <source>Nothing scheduled</source>
        <extracomment>Heading: no post waits to be published.</extracomment>
        <translation>Nada agendado</translation>
    </message>
    <message>
        <source>Schedule a post in Brisken Roost and it shows up here.</source>
        <extracomment>Text under that heading.</extracomment>
        <translation>Agende um post no Brisken Roost e ele aparecerá aqui.</translation>
    </message>
    <message numerus="yes">
        <source>Failed: %lld</source>
        <extracomment>How many posts could not be published.</extracomment>
        <translation>
            <numerusform>Com falha: %lld</numerusform>
            <numerusform>Com falha: %lld</numerusform>
        </translation>
    </message>
    <message>
        <source>Best post</source>
        <extracomment>Heading over one post.</extracomment>
        <translation>Melhor post</translation>
    </message>
    <message>
        <source>Followers</source>
        <extracomment>Heading over a number.</extracomment>
        <translation>Seguidores</translation>
    </message>
</context>
</TS>
