<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Confirmer la désinstallation</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Voulez-vous supprimer
Norvane Clipwright ?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Supprimer aussi les fichiers d’effets</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Désinstallation de Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>La recherche de mises à jour a échoué.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Vous disposez déjà de la dernière version.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Le téléchargement
de la mise à jour a échoué.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>L’installation a échoué.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Désinstallation de Norvane Clipwright</translation>
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
        <translation>Bonjour,

Je m’appelle Arlen et je suis ingénieur chez Norvane Technology. Nous tenons à créer des logiciels faciles à utiliser et nous mettons tout en œuvre pour qu’ils vous conviennent au mieux.

Merci pour votre avis.
Au plaisir de vous retrouver.

Merci encore !</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Pourquoi désinstallez-vous Clipwright ?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Il plante ou se fige sur mon ordinateur.</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Le prix ne me convient pas.</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Il me manque des fonctionnalités.</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Il est trop difficile à utiliser.</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>J’ai trouvé un meilleur outil.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Autre raison</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Décrire le problème</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Veuillez décrire le problème rencontré.</translation>
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
        <translation>Tout</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Créativité</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Productivité</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Utilitaires</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Autres applications</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
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
        <translation>Désinstallation de Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Chargement</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
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
        <translation>Merci pour votre avis !
Désinstallation en cours…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Temps restant : environ 15 s</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Progression de la désinstallation</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Adresse e-mail</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Veuillez saisir une adresse e-mail valide.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminer</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Autres applications</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Autres produits</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Échec de la désinstallation</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Des erreurs se sont produites. Veuillez réessayer.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Temps restant : environ %1 s</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Désinstallation réussie</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Abonnez-vous pour recevoir nos actualités</translation>
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
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Mise à niveau en cours, veuillez patienter…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Progression de la mise à niveau</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Mise à niveau terminée</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>La nouvelle version est plus stable et plus rapide !</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Lancer</translation>
    </message>
</context>
</TS>
