<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Confirmar desinstalação</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Deseja realmente remover
o Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Remover também todos os arquivos de efeitos</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remover</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Desinstalar o Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Não foi possível verificar se há atualizações.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Você já tem a versão mais recente.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Não foi possível baixar a atualização.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>A instalação falhou.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Desinstalar o Norvane Clipwright</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>OptionPage</name>
    <message>
        <source>OptionPage</source>
        <translation>OptionPage</translation>
    </message>
    <message>
        <source>Hello there,

I am Arlen, an engineer at Norvane Technology. We are committed to creating easy-to-use software. We will work hard to make it as suitable as possible for you.

Thank you for your feedback.
Hope to meet you again.

Thank you!</source>
        <translation>Olá!

Sou Arlen, engenheiro da Norvane Technology. Queremos criar programas fáceis de usar e trabalhamos para que eles atendam cada vez melhor às suas necessidades.

Obrigado pela sua opinião.
Esperamos reencontrar você em breve.

Muito obrigado!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Por que você quer desinstalar o programa?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>O programa travou ou fechou sozinho.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>O preço não me parece adequado.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Faltam recursos de que preciso.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>O programa é muito difícil de usar.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>Encontrei um programa melhor.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Outro motivo</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Descreva o problema</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Por favor, descreva o problema encontrado.</translation>
    </message>
</context>
<context>
    <name>ProductItem</name>
    <message>
        <source>ProductItem</source>
        <translation>ProductItem</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
</context>
<context>
    <name>ProductPage</name>
    <message>
        <source>ProductPage</source>
        <translation>ProductPage</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Todos</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Criatividade</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Produtividade</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Utilitários</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Mais apps para você</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
</context>
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <extracomment>"LTR" for languages that are written from left to right, "RTL" for the others. The framework asks for it when a catalogue is installed and mirrors the whole interface accordingly.</extracomment>
        <translation>LTR</translation>
    </message>
</context>
<context>
    <name>SplashWindow</name>
    <message>
        <source>SplashWindow</source>
        <translation>Desinstalar o Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Carregando</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
</context>
<context>
    <name>UninstallPage</name>
    <message>
        <source>UninstallPage</source>
        <translation>UninstallPage</translation>
    </message>
    <message>
        <source>Thanks for your feedback! Uninstalling...</source>
        <translation>Obrigado pela sua opinião!
Desinstalando…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Tempo restante: cerca de 15 s</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Progresso da desinstalação</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Endereço de e-mail</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Insira um endereço de e-mail válido.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Concluir</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Mais apps para você</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Mais produtos</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Falha na desinstalação</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Ocorreram erros na desinstalação. Tente novamente.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Tempo restante: cerca de %1 s</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Desinstalação concluída</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Inscreva-se para receber as novidades</translation>
    </message>
</context>
<context>
    <name>UpgradePage</name>
    <message>
        <source>UpgradePage</source>
        <translation>UpgradePage</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Atualizando, aguarde…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Progresso da atualização</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Atualização concluída</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>A nova versão é mais estável e mais rápida!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Abrir</translation>
    </message>
</context>
</TS>
