<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Confirmar la desinstalación</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>¿Seguro que desea eliminar Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Eliminar también todos los archivos de efectos</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Eliminar</translation>
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
        <translation>Desinstalador de Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>No se pudo comprobar si hay actualizaciones.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Ya tiene la versión más reciente.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>No se pudo descargar la actualización.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>No se pudo completar la instalación.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Desinstalador de Norvane Clipwright</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
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
        <translation>Hola:

Soy Arlen y trabajo como ingeniero en Norvane Technology. Nuestro compromiso es crear programas fáciles de usar, y nos esforzamos para que se adapten lo mejor posible a usted.

Gracias por sus comentarios.
Esperamos volver a encontrarnos.

¡Muchas gracias!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>¿Por qué desea desinstalar Clipwright?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Se cierra solo o se bloquea en mi equipo.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>El precio no me parece adecuado.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Le faltan funciones que necesito.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Es demasiado difícil de usar.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>He encontrado una herramienta mejor.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Otro motivo</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Describir el problema</translation>
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
        <translation>Describa el problema que ha encontrado.</translation>
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
        <translation>Todo</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Creatividad</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Productividad</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Utilidades</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Más aplicaciones</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
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
        <translation>Desinstalador de Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Cargando</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
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
        <translation>¡Gracias por sus comentarios!
Desinstalando…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Tiempo restante aproximado: 15 s</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Progreso de la desinstalación</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Correo electrónico</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Escriba una dirección de correo electrónico válida.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Listo</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Más aplicaciones</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Más productos</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>No se pudo desinstalar</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Se produjeron errores. Intente desinstalar de nuevo.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Tiempo restante aproximado: %1 s</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Desinstalación completada</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Suscríbase para recibir nuestras novedades</translation>
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
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Actualizando, espere…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Progreso de la actualización</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Actualización completada</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>¡La nueva versión es más estable y rápida!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Iniciar</translation>
    </message>
</context>
</TS>
