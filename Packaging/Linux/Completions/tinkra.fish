# Completion of tinkra(1) for fish.

function __tinkra_identifiers
    tinkra calendars --json 2>/dev/null | string match --all --regex --groups-only '"id":"([^"\\\\]*)"'
end

complete -c tinkra -f
complete -c tinkra -n __fish_use_subcommand -l help -d 'Print help'
complete -c tinkra -n __fish_use_subcommand -l version -d 'Print the version'
complete -c tinkra -n __fish_use_subcommand -a calendars -d 'List accounts, calendars and their identifiers'
complete -c tinkra -n __fish_use_subcommand -a select -d 'Monitor calendars, and synchronise'
complete -c tinkra -n __fish_use_subcommand -a deselect -d 'Stop monitoring calendars, and synchronise'
complete -c tinkra -n __fish_use_subcommand -a upcoming -d 'List the next alarms'
complete -c tinkra -n __fish_use_subcommand -a sync -d 'Arm the alarms of the next 30 days'
complete -c tinkra -n __fish_use_subcommand -a pending -d 'List the alarms that the notification service holds'
complete -c tinkra -n __fish_use_subcommand -a occurrences -d 'Show what calendar files contain'
complete -c tinkra -n __fish_use_subcommand -a test-alarm -d 'Ring now, to see and hear what an alarm is like'
complete -c tinkra -n __fish_use_subcommand -a doctor -d 'Check everything that alarms depend on'
complete -c tinkra -n __fish_use_subcommand -a help -d 'Explain a command'

complete -c tinkra -n '__fish_seen_subcommand_from calendars upcoming sync pending occurrences doctor' -l json -d 'Print JSON'
complete -c tinkra -n '__fish_seen_subcommand_from upcoming' -l days -x -d 'Days to look ahead'
complete -c tinkra -n '__fish_seen_subcommand_from occurrences' -l from -x -d 'First start to show'
complete -c tinkra -n '__fish_seen_subcommand_from occurrences' -l to -x -d 'Show starts before this'
complete -c tinkra -n '__fish_seen_subcommand_from occurrences' -F
complete -c tinkra -n '__fish_seen_subcommand_from select deselect' -a '(__tinkra_identifiers)'
