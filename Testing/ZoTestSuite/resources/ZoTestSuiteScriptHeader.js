/*
  Javascript Datei für die Reports.

  Die Sortierfunktionen für Tabellen mit der Klasse "sortable" stammen aus
  dem quelloffenen Skript "sorttable" (Version 2, Stuart Langridge), wie es
  das npm-Paket sorttable 1.0.2 unter der MIT-Lizenz verteilt. Es folgt hier
  unverändert; der Build bettet es hinter diesem Kommentar ein.
*/

